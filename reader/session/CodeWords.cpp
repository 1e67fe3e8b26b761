#include "reader/session/CodeWords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace sentiq {
namespace {

struct CodeRow {
  CodeKind kind;
  std::uint64_t code;
  std::string_view words;
};

constexpr CodeRow codeRows[] = {
    CodeRow{CodeKind::Exception, 0x40000015, "abort"},
    CodeRow{CodeKind::Exception, 0x80000003, "breakpoint"},
    CodeRow{CodeKind::Exception, 0xC0000005, "access violation"},
    CodeRow{CodeKind::Exception, 0xC0000006, "in-page error: a file could not be read"},
    CodeRow{CodeKind::Exception, 0xC0000008, "invalid handle"},
    CodeRow{CodeKind::Exception, 0xC0000017, "out of memory"},
    CodeRow{CodeKind::Exception, 0xC000001D, "illegal instruction"},
    CodeRow{CodeKind::Exception, 0xC0000025, "exception that cannot be continued"},
    CodeRow{CodeKind::Exception, 0xC000008C, "array bounds exceeded"},
    CodeRow{CodeKind::Exception, 0xC000008E, "floating-point division by zero"},
    CodeRow{CodeKind::Exception, 0xC0000090, "invalid floating-point operation"},
    CodeRow{CodeKind::Exception, 0xC0000094, "integer division by zero"},
    CodeRow{CodeKind::Exception, 0xC0000095, "integer overflow"},
    CodeRow{CodeKind::Exception, 0xC0000096, "privileged instruction"},
    CodeRow{CodeKind::Exception, 0xC00000FD, "stack overflow"},
    CodeRow{CodeKind::Exception, 0xC0000135, "module not found"},
    CodeRow{CodeKind::Exception, 0xC0000142, "module failed to start"},
    CodeRow{CodeKind::Exception, 0xC0000194, "possible deadlock"},
    CodeRow{CodeKind::Exception, 0xC000027B, "unhandled error of a Windows Runtime component"},
    CodeRow{CodeKind::Exception, 0xC0000374, "heap corruption"},
    CodeRow{CodeKind::Exception, 0xC0000409, "fail fast or stack buffer overrun"},
    CodeRow{CodeKind::Exception, 0xC0000417, "invalid parameter to the C runtime"},
    CodeRow{CodeKind::Exception, 0xC000041D, "unhandled exception in a callback"},
    CodeRow{CodeKind::Exception, 0xC0000420, "failed assertion"},
    CodeRow{CodeKind::Exception, 0xC0000602, "fail fast"},
    CodeRow{CodeKind::Exception, 0xC06D007E, "delay-loaded module not found"},
    CodeRow{CodeKind::Exception, 0xC06D007F, "delay-loaded function not found"},
    CodeRow{CodeKind::Exception, 0xE0434352, "unhandled .NET exception"},
    CodeRow{CodeKind::Exception, 0xE0434F4D, "unhandled .NET exception"},
    CodeRow{CodeKind::Exception, 0xE06D7363, "unhandled C++ exception"},

    CodeRow{CodeKind::Stop, 0x0A, "IRQL_NOT_LESS_OR_EQUAL"},
    CodeRow{CodeKind::Stop, 0x19, "BAD_POOL_HEADER"},
    CodeRow{CodeKind::Stop, 0x1A, "MEMORY_MANAGEMENT"},
    CodeRow{CodeKind::Stop, 0x1E, "KMODE_EXCEPTION_NOT_HANDLED"},
    CodeRow{CodeKind::Stop, 0x24, "NTFS_FILE_SYSTEM"},
    CodeRow{CodeKind::Stop, 0x3B, "SYSTEM_SERVICE_EXCEPTION"},
    CodeRow{CodeKind::Stop, 0x50, "PAGE_FAULT_IN_NONPAGED_AREA"},
    CodeRow{CodeKind::Stop, 0x7A, "KERNEL_DATA_INPAGE_ERROR"},
    CodeRow{CodeKind::Stop, 0x7E, "SYSTEM_THREAD_EXCEPTION_NOT_HANDLED"},
    CodeRow{CodeKind::Stop, 0x7F, "UNEXPECTED_KERNEL_MODE_TRAP"},
    CodeRow{CodeKind::Stop, 0x9F, "DRIVER_POWER_STATE_FAILURE"},
    CodeRow{CodeKind::Stop, 0xC2, "BAD_POOL_CALLER"},
    CodeRow{CodeKind::Stop, 0xD1, "DRIVER_IRQL_NOT_LESS_OR_EQUAL"},
    CodeRow{CodeKind::Stop, 0xE2, "MANUALLY_INITIATED_CRASH"},
    CodeRow{CodeKind::Stop, 0xEF, "CRITICAL_PROCESS_DIED"},
    CodeRow{CodeKind::Stop, 0xF4, "CRITICAL_OBJECT_TERMINATION"},
    CodeRow{CodeKind::Stop, 0xFC, "ATTEMPTED_EXECUTE_OF_NOEXECUTE_MEMORY"},
    CodeRow{CodeKind::Stop, 0x101, "CLOCK_WATCHDOG_TIMEOUT"},
    CodeRow{CodeKind::Stop, 0x109, "CRITICAL_STRUCTURE_CORRUPTION"},
    CodeRow{CodeKind::Stop, 0x10E, "VIDEO_MEMORY_MANAGEMENT_INTERNAL"},
    CodeRow{CodeKind::Stop, 0x113, "VIDEO_DXGKRNL_FATAL_ERROR"},
    CodeRow{CodeKind::Stop, 0x116, "VIDEO_TDR_FAILURE"},
    CodeRow{CodeKind::Stop, 0x117, "VIDEO_TDR_TIMEOUT_DETECTED"},
    CodeRow{CodeKind::Stop, 0x119, "VIDEO_SCHEDULER_INTERNAL_ERROR"},
    CodeRow{CodeKind::Stop, 0x124, "WHEA_UNCORRECTABLE_ERROR"},
    CodeRow{CodeKind::Stop, 0x133, "DPC_WATCHDOG_VIOLATION"},
    CodeRow{CodeKind::Stop, 0x139, "KERNEL_SECURITY_CHECK_FAILURE"},
    CodeRow{CodeKind::Stop, 0x141, "VIDEO_ENGINE_TIMEOUT_DETECTED"},
    CodeRow{CodeKind::Stop, 0x144, "BUGCODE_USB3_DRIVER"},
    CodeRow{CodeKind::Stop, 0x154, "UNEXPECTED_STORE_EXCEPTION"},
    CodeRow{CodeKind::Stop, 0x193, "VIDEO_DXGKRNL_LIVEDUMP"},
    CodeRow{CodeKind::Stop, 0x1A1, "WIN32K_CALLOUT_WATCHDOG_LIVEDUMP"},
    CodeRow{CodeKind::Stop, 0x1A8, "VIDEO_DXGKRNL_BLACK_SCREEN_LIVEDUMP"},
    CodeRow{CodeKind::Stop, 0x1B0, "VIDEO_MINIPORT_FAILED_LIVEDUMP"},
    CodeRow{CodeKind::Stop, 0x1B8, "VIDEO_MINIPORT_BLACK_SCREEN_LIVEDUMP"},

    CodeRow{CodeKind::SleepReason, 0, "button or lid"},
    CodeRow{CodeKind::SleepReason, 2, "battery low"},
    CodeRow{CodeKind::SleepReason, 4, "asked for by a program"},
    CodeRow{CodeKind::SleepReason, 5, "asked for by the kernel"},
    CodeRow{CodeKind::SleepReason, 6, "time to hibernate from sleep"},
    CodeRow{CodeKind::SleepReason, 7, "idle"},

    CodeRow{CodeKind::StandbyReason, 1, "power button"},
    CodeRow{CodeKind::StandbyReason, 2, "remote connection"},
    CodeRow{CodeKind::StandbyReason, 4, "user input"},
    CodeRow{CodeKind::StandbyReason, 10, "unlocked"},
    CodeRow{CodeKind::StandbyReason, 11, "display switched off"},
    CodeRow{CodeKind::StandbyReason, 12, "idle"},
    CodeRow{CodeKind::StandbyReason, 14, "sleep button"},
    CodeRow{CodeKind::StandbyReason, 15, "lid"},
    CodeRow{CodeKind::StandbyReason, 16, "battery changed"},
    CodeRow{CodeKind::StandbyReason, 20, "sleep or hibernation"},
    CodeRow{CodeKind::StandbyReason, 21, "idle"},
    CodeRow{CodeKind::StandbyReason, 25, "resumed from hibernation"},
    CodeRow{CodeKind::StandbyReason, 31, "keyboard"},
    CodeRow{CodeKind::StandbyReason, 32, "mouse"},
    CodeRow{CodeKind::StandbyReason, 33, "touchpad"},
    CodeRow{CodeKind::StandbyReason, 34, "pen"},
    CodeRow{CodeKind::StandbyReason, 44, "fingerprint"},
    CodeRow{CodeKind::StandbyReason, 53, "battery nearly empty"},
    CodeRow{CodeKind::StandbyReason, 54, "touch"},

    CodeRow{CodeKind::PowerAction, 2, "sleep"},
    CodeRow{CodeKind::PowerAction, 3, "hibernate"},
    CodeRow{CodeKind::PowerAction, 4, "shut down"},
    CodeRow{CodeKind::PowerAction, 5, "restart"},
    CodeRow{CodeKind::PowerAction, 6, "power off"},
};

}  // namespace

std::string_view codeWords(CodeKind kind, std::uint64_t code) {
  const auto* const row = std::find_if(std::begin(codeRows), std::end(codeRows), [&](const CodeRow& candidate) {
    return candidate.kind == kind && candidate.code == code;
  });
  return row != std::end(codeRows) ? row->words : std::string_view{};
}

std::optional<std::uint64_t> parseHex(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
  }
  std::uint64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  return result.ec == std::errc{} ? std::optional(number) : std::nullopt;
}

std::string showHex(std::uint64_t number) {
  std::array<char, 16> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return "0x" + std::string(digits.data(), result.ptr);
}

}  // namespace sentiq
