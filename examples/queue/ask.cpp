// ask TEXT [SECONDS]: asks the module capitals for TEXT in capital letters and prints what it
// answers; within 5 seconds unless it is said otherwise.

#include <mailhearth/mailhearth.h>

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv) {
  if (argc < 2 || !IsFieldValue(argv[1])) {
    std::cerr << "usage: ask TEXT [SECONDS]\n";
    return EXIT_FAILURE;
  }
  SControl question;
  question["Text:"] = argv[1];
  SRequest request(question);
  if (!request.Ask("capitals", argc > 2 ? std::atof(argv[2]) : 5)) {
    std::cerr << "ask: " << GetErrorString() << '\n';
    return EXIT_FAILURE;
  }
  std::cout << request.Get("Answer:").Get(0) << '\n';
}
