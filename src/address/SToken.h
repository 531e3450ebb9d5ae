// SToken is a token of a mail address with its type, as NextToken of a parser returns it.
//
// The text is that of the input, delimiters included: a quoted string has its quotes, a
// comment its parentheses, a domain literal its brackets, an escaped byte its backslash.
//
// A token from a parser costs no allocation: it is a handle on the parser's input and a range
// of it, and keeps the whole input alive. To keep only the text, keep Text().
//
//   S822Parser parser("joe@example.org (Joe)");
//   for (SToken t = parser.NextToken(); (t.Type() & (TokEnd | TokError)) == 0;
//        t = parser.NextToken()) std::cout << t.View() << '\n';

#ifndef MAILHEARTH_ADDRESS_STOKEN_H
#define MAILHEARTH_ADDRESS_STOKEN_H

#include <cstddef>
#include <string_view>
#include <utility>

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Types of tokens. Each is one bit, so a set of them is a mask.
enum TokenType : int {
  TokError = 0x1,         // malformed input; the text is the part that was read of it
  TokEnd = 0x2,           // the end of the input; no text
  TokAtom = 0x4,          // a run of ordinary bytes
  TokQuoted = 0x8,        // a string in double quotes
  TokComment = 0x10,      // a comment in parentheses; RFC 822 only
  TokLiteral = 0x20,      // a domain literal in brackets
  TokBad = 0x40,          // one byte that is neither ordinary nor special
  TokLess = 0x80,         // <
  TokGreater = 0x100,     // >
  TokAt = 0x200,          // @
  TokDot = 0x400,         // .
  TokComma = 0x800,       // ,
  TokSemicolon = 0x1000,  // ;
  TokColon = 0x2000,      // :
  TokCrlf = 0x4000,       // a line end that is not folded; no text; RFC 822 only
  TokPercent = 0x8000,    // %; RFC 821 only
};

class MAILHEARTH_EXPORT SToken {
 public:
  virtual ~SToken() = default;

  // A TokenType; any number for a token that the program makes. Inline, because the parsers
  // call it at every step.
  [[nodiscard]] virtual int Type() const { return type_; }

  // A token of all of `text`.
  SToken(const SString& text, int type) : source_(text), start_(0), length_(kAll), type_(type) {}

  // The `length` bytes of `source` from `start`, which are not copied.
  // Needs: they are within `source`.
  SToken(const SString& source, int start, int length, int type)
      : source_(source), start_(start), length_(length), type_(type) {}

  SToken(const SToken&) = default;
  SToken(SToken&& other) noexcept
      : source_(std::move(other.source_)),
        start_(std::exchange(other.start_, 0)),
        length_(std::exchange(other.length_, kAll)),
        type_(other.type_) {}

  // Assigns the text and the result of the other's Type().
  SToken& operator=(const SToken& other) {
    return *this = SToken(other.source_, other.start_, other.length_, other.Type());
  }
  // NOLINTNEXTLINE(performance-noexcept-move-constructor): Type() may be another's
  SToken& operator=(SToken&& other) {
    type_ = other.Type();
    swap(source_, other.source_);
    std::swap(start_, other.start_);
    std::swap(length_, other.length_);
    return *this;
  }

  // Returns the text: the string that the token was made of, or a new one.
  [[nodiscard]] SString Text() const;

  // The bytes of the text, for as long as the token lives.
  [[nodiscard]] std::string_view View() const {
    if (length_ == kAll) return source_.View();
    return {source_.Data() + start_, static_cast<std::size_t>(length_)};
  }

 private:
  static constexpr int kAll = -1;  // the length of a token that is all of its source

  SString source_;
  int start_, length_;
  int type_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_STOKEN_H
