// Sends power broadcasts to the program's hidden window, as the system does: PowerMessage.exe CODE...
#include <windows.h>

#include <cstdlib>

int main(int argc, char** argv) {
  const HWND window = FindWindowW(L"PowerEventWindowClass", L"Power Event Listener");
  if (window == nullptr) {
    return 1;
  }
  for (int i = 1; i < argc; ++i) {
    SendMessageW(window, WM_POWERBROADCAST, std::strtoul(argv[i], nullptr, 0), 0);
  }
}
