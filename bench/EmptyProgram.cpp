// What the footprint is measured beside: a windowed program that does nothing.
//   EmptyProgram.exe                                ends at once
//   EmptyProgram.exe THREADS looks|stays DLL...     loads the DLLs, makes a window that is not shown and keeps idle
//                                                   threads until it is ended; "looks" asks for the adapters once
#include <windows.h>

#include <dxgi.h>
#include <shellapi.h>

#include <string_view>
#include <thread>
#include <vector>

namespace {

// Found by name, so that the program does not load the library when it ends at once.
void lookAtAdapters() {
  const auto create = reinterpret_cast<HRESULT(WINAPI*)(REFIID, void**)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"dxgi.dll"), "CreateDXGIFactory1")));
  IDXGIFactory1* factory = nullptr;
  if (create == nullptr || FAILED(create(IID_IDXGIFactory1, reinterpret_cast<void**>(&factory)))) {
    return;
  }
  IDXGIAdapter* adapter = nullptr;
  DXGI_ADAPTER_DESC description{};
  if (SUCCEEDED(factory->EnumAdapters(0, &adapter))) {
    adapter->GetDesc(&description);
    adapter->Release();
  }
  factory->Release();
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int) {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  if (count < 3) {
    return 0;
  }
  CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr);
  for (int i = 3; i < count; ++i) {
    LoadLibraryW(arguments[i]);
  }
  if (std::wstring_view(arguments[2]) == L"looks") {
    lookAtAdapters();
  }
  std::vector<std::thread> threads;
  for (unsigned long i = std::wcstoul(arguments[1], nullptr, 10); i > 0; --i) {
    threads.emplace_back([] { Sleep(INFINITE); });
  }
  threads.front().join();
}
