// Stands in for Canvix: uses the desktop as every program with windows does, prints its process id, does nothing for
// the given number of seconds (an hour without one), and ends with 0.
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

int main(int argc, char** argv) {
  GetDesktopWindow();
  std::printf("%lu\n", GetCurrentProcessId());
  std::fflush(stdout);
  std::this_thread::sleep_for(std::chrono::seconds(argc > 1 ? std::atoi(argv[1]) : 3600));
}
