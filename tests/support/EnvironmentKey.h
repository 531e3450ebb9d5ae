// Lends a test an environment variable and puts it back afterwards.

#ifndef MAILHEARTH_TESTS_SUPPORT_ENVIRONMENTKEY_H
#define MAILHEARTH_TESTS_SUPPORT_ENVIRONMENTKEY_H

#include <cstdlib>
#include <optional>
#include <string>

class EnvironmentKey {
 public:
  explicit EnvironmentKey(const char* name) : name_(name) {
    if (const char* const value = std::getenv(name)) before_ = value;
  }
  ~EnvironmentKey() {
    if (before_) {
      ::setenv(name_.c_str(), before_->c_str(), 1);
    } else {
      ::unsetenv(name_.c_str());
    }
  }
  EnvironmentKey(const EnvironmentKey&) = delete;
  EnvironmentKey& operator=(const EnvironmentKey&) = delete;

  [[nodiscard]] const char* Name() const { return name_.c_str(); }

 private:
  std::string name_;
  std::optional<std::string> before_;
};

#endif  // MAILHEARTH_TESTS_SUPPORT_ENVIRONMENTKEY_H
