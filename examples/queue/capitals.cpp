// capitals ID: a module that answers a question: "Text:" in capital letters.

#include <mailhearth/mailhearth.h>

#include <cstdlib>

int main(int argc, char** argv) {
  SControl record;
  if (argc != 2 || !record.Read(argv[1])) return EXIT_FAILURE;
  SRequest request(record);
  request["Answer:"] = UpperCase(request.Get("Text:"));
  return request.Answer() ? EXIT_SUCCESS : EXIT_FAILURE;
}
