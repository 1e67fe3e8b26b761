// Stands in for the crash-reporting client: accepts its calls, and on request records them or fails.
//   TARNWICK_RECORD=file     one line for each call
//   TARNWICK_FAULT=refuse    CrashReporterInitialize returns false
//   TARNWICK_FAULT=throw     CrashReporterInitialize throws
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

void record(const std::string& call) {
  const std::string path = environment("TARNWICK_RECORD");
  if (!path.empty()) {
    std::ofstream(path, std::ios::app) << call << '\n';
  }
}

}  // namespace

extern "C" {

bool CrashReporterInitialize(std::uintptr_t p1, const char* product, const char* version, const char* build,
                             std::uintptr_t p5, std::uintptr_t p6, std::uintptr_t p7, std::uintptr_t p8,
                             std::uintptr_t p9, std::uintptr_t p10, std::uintptr_t p11, bool p12, std::uintptr_t p13,
                             bool p14) {
  std::string call = "CrashReporterInitialize " + std::to_string(p1) + " " + product + " " + version + " " + build;
  for (const std::uintptr_t position : {p5, p6, p7, p8, p9, p10, p11}) {
    call += " " + std::to_string(position);
  }
  record(call + (p12 ? " true " : " false ") + std::to_string(p13) + (p14 ? " true" : " false"));
  if (environment("TARNWICK_FAULT") == "throw") {
    throw 137;
  }
  return environment("TARNWICK_FAULT") != "refuse";
}

void SetDetachedMode() {
  record("SetDetachedMode");
}

std::uint32_t GetCRLastErrorCode() {
  record("GetCRLastErrorCode");
  return 5;
}

void VexaCrashReporterTerminate(std::uintptr_t p1) {
  record("VexaCrashReporterTerminate " + std::to_string(p1));
}

}  // extern "C"
