// What the size of the program is measured beside: one line through a stream.
#include <iostream>

int main() {
  std::cout << "one line\n";
}
