// Stands in for the crash-reporting client: accepts its calls, and on request records them or fails.
//   TARNWICK_RECORD=file     one line for each call
//   TARNWICK_FAULT=refuse    CrashReporterInitialize returns false
//   TARNWICK_FAULT=throw     CrashReporterInitialize throws
//   TARNWICK_FAULT=code      CrashReporterInitialize raises the exception with this code
//   TARNWICK_FAULT=later     the program's calls of OpenProcess throw what is no std::exception
// What nobody handles comes to its filter, which ends the process with 137.
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

template <typename... Parts>
static void record(const char* call, const Parts&... parts) {
  if (const char* const path = std::getenv("TARNWICK_RECORD")) {
    std::ofstream file(path, std::ios::app);
    file << call;
    ((file << ' ' << parts), ...);
    file << '\n';
  }
}

static HANDLE WINAPI openNothing(DWORD, BOOL, DWORD) {
  throw 137;
}

// Writes a jump to it where the system's begins.
static void replaceOpenProcess() {
  auto* const code = reinterpret_cast<char*>(OpenProcess);
  const auto to = &openNothing;
  DWORD protection = 0;
  VirtualProtect(code, 12, PAGE_EXECUTE_READWRITE, &protection);
  std::memcpy(code, "\x48\xB8........\xFF\xE0", 12);  // mov rax, to; jmp rax
  std::memcpy(code + 2, &to, 8);
}

static LONG WINAPI endsWith137(EXCEPTION_POINTERS*) {
  record("filter");
  return TerminateProcess(GetCurrentProcess(), 137);
}

extern "C" {

bool CrashReporterInitialize(std::uintptr_t p1, const char* product, const char* version, const char* build,
                             std::uintptr_t p5, std::uintptr_t p6, std::uintptr_t p7, std::uintptr_t p8,
                             std::uintptr_t p9, std::uintptr_t p10, std::uintptr_t p11, std::uintptr_t p12,
                             std::uintptr_t p13, std::uintptr_t p14) {
  record("CrashReporterInitialize", p1, product, version, build, p5, p6, p7, p8, p9, p10, p11, p12, p13, p14,
         GetErrorMode());
  SetUnhandledExceptionFilter(endsWith137);
  const char* const given = std::getenv("TARNWICK_FAULT");
  const std::string fault = given == nullptr ? "" : given;
  if (const auto code = std::strtoul(fault.c_str(), nullptr, 0)) {
#ifdef _MSC_VER
    if (code == 0xE06D7363) {
      throw 137;
    }
#endif
    // As Visual C++ throws: a number, the object, its types (none, 16 bytes on), and where those count from.
    static const std::uint32_t types[] = {0, 0, 0, 16, 0};
    const auto at = reinterpret_cast<ULONG_PTR>(types);
    const ULONG_PTR figures[] = {0x19930520, at, at, at};
    RaiseException(code, EXCEPTION_NONCONTINUABLE, 4, figures);
  }
  if (fault == "later") {
    replaceOpenProcess();
  }
  return fault == "throw" ? throw 137 : fault != "refuse";
}

void SetDetachedMode() {
  record("SetDetachedMode");
}

std::uint32_t GetCRLastErrorCode() {
  return record("GetCRLastErrorCode"), 5;
}

void VexaCrashReporterTerminate(std::uintptr_t p1) {
  record("VexaCrashReporterTerminate", p1);
}

}  // extern "C"
