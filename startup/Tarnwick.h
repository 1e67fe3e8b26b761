// The four functions of the crash-reporting client, declared here because the library comes without a header.
// Known are the names, the number of arguments, the text arguments and the 8-bit result of
// CrashReporterInitialize; every other argument is only a position, declared pointer-sized: of a smaller one, the rest
// of its place on the stack would be left as it was. SetDetachedMode may take the identity or nothing: in the x64
// calling convention an argument too many does no harm, one too few would.
#pragma once

#include <cstdint>

// NOLINTBEGIN(readability-identifier-naming): the names are the library's.
extern "C" {

__declspec(dllimport) bool CrashReporterInitialize(std::uintptr_t position1, const char* product, const char* version,
                                                   const char* build, std::uintptr_t reserved, std::uintptr_t position6,
                                                   std::uintptr_t position7, std::uintptr_t position8,
                                                   std::uintptr_t position9, std::uintptr_t position10,
                                                   std::uintptr_t position11, std::uintptr_t position12,
                                                   std::uintptr_t position13, std::uintptr_t position14);

__declspec(dllimport) void SetDetachedMode(const char* product, const char* version, const char* build,
                                           std::uintptr_t reserved);

__declspec(dllimport) std::uint32_t GetCRLastErrorCode();

__declspec(dllimport) void VexaCrashReporterTerminate(std::uintptr_t position1);

}  // extern "C"
// NOLINTEND(readability-identifier-naming)
