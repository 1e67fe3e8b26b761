#include "reader/events/CodeWords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace sentiq {
namespace {

// Code, blank, words; all codes hexadecimal.
constexpr std::string_view exceptions =
    "40000015 abort|80000003 breakpoint|80131506 internal error|c0000005 access violation|c0000006 "
    "in-page error: file not readable|"
    "c0000008 invalid handle|c0000017 out of memory|c000001d illegal instruction|"
    "c0000025 exception not continuable|c000008c array bounds exceeded|c000008e floating-point division by zero|"
    "c0000090 invalid floating-point operation|c0000094 integer division by zero|c0000095 integer overflow|"
    "c0000096 privileged instruction|c00000fd stack overflow|c0000135 module not found|"
    "c0000142 module failed to start|c0000194 possible deadlock|c000027b Windows Runtime error|"
    "c0000374 heap corruption|c0000409 fail fast or stack buffer overrun|"
    "c0000417 invalid parameter to the C runtime|c000041d unhandled exception in a callback|"
    "c0000420 failed assertion|c0000602 fail fast|c06d007e delay-loaded module not found|"
    "c06d007f delay-loaded function not found|e0434352 unhandled .NET exception|"
    "e0434f4d unhandled .NET exception|e06d7363 unhandled C++ exception";
constexpr std::string_view stops =
    "a IRQL_NOT_LESS_OR_EQUAL|19 BAD_POOL_HEADER|1a MEMORY_MANAGEMENT|1e KMODE_EXCEPTION_NOT_HANDLED|"
    "24 NTFS_FILE_SYSTEM|3b SYSTEM_SERVICE_EXCEPTION|50 PAGE_FAULT_IN_NONPAGED_AREA|7a KERNEL_DATA_INPAGE_ERROR|"
    "7e SYSTEM_THREAD_EXCEPTION_NOT_HANDLED|7f UNEXPECTED_KERNEL_MODE_TRAP|9f DRIVER_POWER_STATE_FAILURE|"
    "c2 BAD_POOL_CALLER|d1 DRIVER_IRQL_NOT_LESS_OR_EQUAL|e2 MANUALLY_INITIATED_CRASH|ef CRITICAL_PROCESS_DIED|"
    "f4 CRITICAL_OBJECT_TERMINATION|fc ATTEMPTED_EXECUTE_OF_NOEXECUTE_MEMORY|101 CLOCK_WATCHDOG_TIMEOUT|"
    "109 CRITICAL_STRUCTURE_CORRUPTION|10e VIDEO_MEMORY_MANAGEMENT_INTERNAL|113 VIDEO_DXGKRNL_FATAL_ERROR|"
    "116 VIDEO_TDR_FAILURE|117 VIDEO_TDR_TIMEOUT_DETECTED|119 VIDEO_SCHEDULER_INTERNAL_ERROR|"
    "124 WHEA_UNCORRECTABLE_ERROR|133 DPC_WATCHDOG_VIOLATION|139 KERNEL_SECURITY_CHECK_FAILURE|"
    "141 VIDEO_ENGINE_TIMEOUT_DETECTED|144 BUGCODE_USB3_DRIVER|154 UNEXPECTED_STORE_EXCEPTION|"
    "193 VIDEO_DXGKRNL_LIVEDUMP|1a1 WIN32K_CALLOUT_WATCHDOG_LIVEDUMP|1a8 VIDEO_DXGKRNL_BLACK_SCREEN_LIVEDUMP|"
    "1b0 VIDEO_MINIPORT_FAILED_LIVEDUMP|1b8 VIDEO_MINIPORT_BLACK_SCREEN_LIVEDUMP";
constexpr std::string_view sleepReasons =
    "0 button or lid|2 battery low|4 asked for by a program|5 asked for by the kernel|"
    "6 time to hibernate from sleep|7 idle";
constexpr std::string_view standbyReasons =
    "1 power button|2 remote connection|4 user input|a unlocked|b display switched off|c idle|e sleep button|"
    "f lid|10 battery changed|14 sleep or hibernation|15 idle|19 resumed from hibernation|1f keyboard|20 mouse|"
    "21 touchpad|22 pen|2c fingerprint|35 battery nearly empty|36 touch";
constexpr std::string_view powerActions = "2 sleep|3 hibernate|4 shut down|5 restart|6 power off";

// In the order of CodeKind.
constexpr std::string_view tables[]{exceptions, stops, sleepReasons, standbyReasons, powerActions};

}  // namespace

std::string_view codeWords(CodeKind kind, std::uint64_t code) {
  for (std::string_view table = tables[static_cast<std::size_t>(kind)]; !table.empty();) {
    const std::string_view row = table.substr(0, table.find('|'));
    if (parseHex(row) == code) {
      return row.substr(row.find(' ') + 1);
    }
    table.remove_prefix(std::min(row.size() + 1, table.size()));
  }
  return {};
}

std::optional<std::uint64_t> parseHex(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
  }
  std::uint64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  const bool whole = result.ptr == text.data() + text.size() || *result.ptr == ' ';
  return result.ec == std::errc{} && whole ? std::optional(number) : std::nullopt;
}

std::optional<std::uint64_t> parseDecimal(std::string_view text) {
  std::uint64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc{} ? std::optional(number) : std::nullopt;
}

bool isSet(std::string_view value) {
  return !value.empty() && value != "false" && value.find_first_not_of("0x") != std::string_view::npos;
}

std::string showHex(std::uint64_t number) {
  std::array<char, 16> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return "0x" + std::string(digits.data(), result.ptr);
}

}  // namespace sentiq
