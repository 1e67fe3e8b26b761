// Stands in for Canvix: does nothing for the given number of seconds (an hour without one) and ends with 0.
#include <chrono>
#include <cstdlib>
#include <thread>

int main(int argc, char** argv) {
  std::this_thread::sleep_for(std::chrono::seconds(argc > 1 ? std::atoi(argv[1]) : 3600));
}
