// What the footprint is measured beside: a windowed program that does nothing.
//   EmptyProgram.exe                      ends at once
//   EmptyProgram.exe THREADS DLL...       loads the DLLs, shows no window, keeps idle threads until it is ended
#include <windows.h>

#include <shellapi.h>

#include <thread>
#include <vector>

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int) {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  if (count < 2) {
    return 0;
  }
  CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr);
  for (int i = 2; i < count; ++i) {
    LoadLibraryW(arguments[i]);
  }
  std::vector<std::thread> threads;
  for (unsigned long i = std::wcstoul(arguments[1], nullptr, 10); i > 0; --i) {
    threads.emplace_back([] { Sleep(INFINITE); });
  }
  threads.front().join();
}
