// The system calls that the queue makes, made plainly, and a directory to make them in.

#ifndef MAILHEARTH_BENCH_QUEUE_BARE_H
#define MAILHEARTH_BENCH_QUEUE_BARE_H

#include <string>
#include <string_view>

// A directory with those of a queue in it, below the value of TMPDIR, else /tmp; Mailhearth
// names it. Gone with the object.
class QueueDir {
 public:
  QueueDir();
  ~QueueDir();
  QueueDir(const QueueDir&) = delete;
  QueueDir& operator=(const QueueDir&) = delete;

  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

// What is done to have the bytes of a file on the disk.
enum class Sync {
  kMapping,  // as the library does: a mapping of the reserved file, and the directory
  kFile,     // fdatasync of the file, and the directory
  kNone
};

// Replaces `dir`/record by a file of this text.
bool BareReplace(const std::string& dir, std::string_view text, Sync sync);

// Replaces the contents of `text` by those of the file.
bool BareRead(const std::string& path, std::string& text);

// Whether a directory is there.
bool BareIsDirectory(const std::string& path);

// Removes a file, but looks first that it is no directory. Returns whether it went.
bool BareRemove(const std::string& path);

// A socket on the loopback address and its port; waits and sends.
int BareSocket(int* port);
bool BareSend(int fd, int port, std::string_view text);
int BareReceive(int fd, char* buffer, int size, int seconds);

#endif  // MAILHEARTH_BENCH_QUEUE_BARE_H
