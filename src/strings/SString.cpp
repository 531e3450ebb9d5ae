#include "SString.h"

#include <locale.h>  // newlocale: POSIX, not in <clocale>
#include <stdlib.h>  // strtod_l

#include <array>
#include <charconv>
#include <cstring>
#include <functional>
#include <limits>
#include <ostream>
#include <string>

#include "Blocks.h"
#include "PointerText.h"
#include "Sizes.h"
#include "StandardError.h"

inline namespace mailhearth {

static_assert(sizeof(SString) == sizeof(void*));

namespace {

// Copies bytes; a few of them without a call.
void CopyBytes(char* to, std::string_view text) {
  if (text.size() < kBlock) {
    PutEnds(BlockOfEnds(text.data(), text.size()), to, text.size());
  } else {
    std::memcpy(to, text.data(), text.size());
  }
}

// Returns a representation that holds `n` times the byte `c`.
SStringRep* Fill(char c, int n) {
  SStringRep* const rep = SStringRep::New(n);
  std::memset(rep->buffer, c, static_cast<std::size_t>(n));
  rep->length = n;
  rep->buffer[n] = '\0';
  return rep;
}

// The text that std::to_chars makes of its arguments.
class NumberText {
 public:
  template <class... Number>
  explicit NumberText(Number... number) {
    end_ = std::to_chars(text_.begin(), text_.end(), number...).ptr;
  }

  operator std::string_view() const { return {text_.begin(), end_}; }

 private:
  std::array<char, 32> text_;  // "-1.234567890123456e-308" is the longest
  const char* end_;
};

constexpr int kSignificantDigits = 16;

bool Printable(char byte) { return byte >= ' ' && byte <= '~' && byte != '\\'; }

void AppendEscaped(std::string& out, char byte) {
  constexpr std::string_view kEscaped = "\t\n\v\f\r\\";
  constexpr std::string_view kLetters = "tnvfr\\";
  if (Printable(byte)) {
    out += byte;
  } else if (const std::size_t at = kEscaped.find(byte); at != kEscaped.npos) {
    (out += '\\') += kLetters[at];
  } else {
    (out += '\\') += std::to_string(static_cast<unsigned char>(byte));
  }
}

std::string Escaped(std::string_view bytes) {
  std::string out;
  for (const char byte : bytes) AppendEscaped(out, byte);
  return out;
}

// Returns the labelled lines of SString::Debug.
std::string Report(const SStringRep& rep) {
  const std::string links = "Number of links:      " + std::to_string(rep.links) + "\n";
  std::string out = "SStringRep stored at: " + PointerText(&rep) + "\n";
  if (rep.allocated < 1) return out + links + "SString is undefined\n\n";
  out += "Buffer located at:    " + PointerText(rep.buffer) + "\n";
  out += "Buffer contents:     '";
  out += Escaped({rep.buffer, static_cast<std::size_t>(rep.length)}) + "'\n";
  out += "SString length:       " + std::to_string(rep.length) + "\n";
  out += "Bytes allocated:      " + std::to_string(rep.allocated) + "\n";
  return out + links + "\n";
}

}  // namespace

SString::SString() : rep_(SStringRep::NewUndefined()) {}
SString::SString(const char* s) : rep_(_CopyOf(_Text(s))) {}
SString::SString(char c, int n) : rep_(Fill(c, CheckedLength(n < 0 ? 0 : n))) {}
SString::SString(double value)
    : rep_(_CopyOf(NumberText(value, std::chars_format::general, kSignificantDigits))) {}

SString::SString(const char* s, int n) {
  if (n < 0) n = 0;
  rep_ = s == nullptr ? Fill('\0', CheckedLength(n)) : _CopyOf({s, static_cast<std::size_t>(n)});
}

SString& SString::operator=(const char* s) {
  const std::string_view text = _Text(s);
  _Assign(text.data(), text.size());
  return *this;
}

SString& SString::operator=(char c) {
  _Assign(&c, 1);
  return *this;
}

SString::operator double() const {
  // glibc and the BSDs keep the C locale ready, so this allocates nothing.
  static const locale_t c = ::newlocale(LC_ALL_MASK, "C", nullptr);
  return ::strtod_l(Terminated(*this).Data(), nullptr, c);
}

static_assert(std::numeric_limits<float>::is_iec559, "narrowing past the range is an infinity");

SString::operator float() const { return static_cast<float>(static_cast<double>(*this)); }

int SString::Write(std::ostream& os) const {
  if (os.fail()) return 0;
  os.write(Data(), Length());
  return os.good() ? 1 : 0;
}

void SString::Debug(int verbose) const {
  const std::string dump = verbose == 0 ? Escaped(View()) : Report(*rep_);
  StandardError().write(dump.data(), static_cast<std::streamsize>(dump.size()));
}

SStringRep* SString::_CopyOf(std::string_view text) {
  SStringRep* const rep = SStringRep::New(CheckedLength(static_cast<std::int64_t>(text.size())));
  CopyBytes(rep->buffer, text);
  rep->length = static_cast<int>(text.size());
  rep->buffer[rep->length] = '\0';
  return rep;
}

SStringRep* SString::_TextOf(std::int64_t value) { return _CopyOf(NumberText(value)); }
SStringRep* SString::_TextOf(std::uint64_t value) { return _CopyOf(NumberText(value)); }

char* SString::_Malloc(int n) {
  rep_ = SStringRep::New(n);
  char* const end = rep_->buffer + n;
  *end = '\0';
  return end;
}

char* SString::_Realloc(int n) {
  if (!_HasRoom(n)) _Rebuffer(n, View().substr(0, static_cast<std::size_t>(n)));
  rep_->buffer[n] = '\0';
  return rep_->buffer + n;
}

void SString::_Rebuffer(int n, std::string_view bytes) {
  if (_Adopted()) return rep_->Rebuffer(n, bytes);
  if (rep_->links == 1 && rep_->Widen(n)) {
    if (!bytes.empty()) std::memmove(rep_->buffer, bytes.data(), bytes.size());
    return _SetLength(static_cast<int>(bytes.size()));
  }
  SStringRep* const left = rep_;
  _Malloc(n);
  bytes.copy(rep_->buffer, bytes.size());
  _SetLength(static_cast<int>(bytes.size()));
  left->Unlink();  // not before: `bytes` may be its own
}

void SString::_Undef() {
  if (_Adopted()) {
    rep_->Clear();
  } else {
    *this = SString();
  }
}

void SString::_Assign(const char* text, std::size_t n) {
  const int length = CheckedLength(static_cast<std::int64_t>(n));
  if (_HasRoom(length)) {
    if (n > 0) std::memmove(rep_->buffer, text, n);  // it may be bytes of this buffer
    _SetLength(length);
  } else {
    _Rebuffer(length, {text, n});
  }
}

void SString::_GrowAndAppend(const char* text, std::size_t n) {
  const int length = rep_->length;
  const int sum = CheckedLength(length + static_cast<std::int64_t>(n));
  const std::ptrdiff_t own = _Holds({text, n}) ? text - rep_->buffer : -1;
  _Realloc(sum);
  if (own >= 0) text = rep_->buffer + own;  // the bytes have moved along
  std::memmove(rep_->buffer + length, text, n);
  _SetLength(sum);
}

bool SString::_Holds(std::string_view text) const {
  const std::less_equal<> upTo;  // a total order, also between unrelated pointers
  return Defined() && !text.empty() && upTo(rep_->buffer, text.data()) &&
         upTo(text.data() + text.size(), rep_->buffer + rep_->allocated);
}

SString Terminated(const SString& s) {
  return !s.Defined() || s.rep_->Terminated() ? s : SString(s.View());
}

SString Lasting(const SString& s) {
  if (s.rep_->origin == SStringRep::kLibrary) return s;
  return s.Defined() ? SString(s.View()) : SString();
}

}  // namespace mailhearth
