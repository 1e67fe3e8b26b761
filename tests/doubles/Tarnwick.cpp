// Stands in for the crash-reporting client: accepts its calls, and on request records them or fails.
//   TARNWICK_RECORD=file     one line for each call
//   TARNWICK_FAULT=refuse    CrashReporterInitialize returns false
//   TARNWICK_FAULT=throw     CrashReporterInitialize throws
//   TARNWICK_FAULT=code      CrashReporterInitialize raises the exception with this code
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

template <typename... Parts>
static void record(const char* call, const Parts&... parts) {
  if (const char* const path = std::getenv("TARNWICK_RECORD")) {
    std::ofstream file(path, std::ios::app);
    file << call << std::boolalpha;
    ((file << ' ' << parts), ...);
    file << '\n';
  }
}

extern "C" {

bool CrashReporterInitialize(std::uintptr_t p1, const char* product, const char* version, const char* build,
                             std::uintptr_t p5, std::uintptr_t p6, std::uintptr_t p7, std::uintptr_t p8,
                             std::uintptr_t p9, std::uintptr_t p10, std::uintptr_t p11, bool p12, std::uintptr_t p13,
                             bool p14) {
  record("CrashReporterInitialize", p1, product, version, build, p5, p6, p7, p8, p9, p10, p11, p12, p13, p14);
  const char* const given = std::getenv("TARNWICK_FAULT");
  const std::string fault = given == nullptr ? "" : given;
  if (const auto code = std::strtoul(fault.c_str(), nullptr, 0)) {
    // What nobody handles ends the process at once, without a debugger.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG { return EXCEPTION_EXECUTE_HANDLER; });
    RaiseException(code, EXCEPTION_NONCONTINUABLE, 0, nullptr);
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
