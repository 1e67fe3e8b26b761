// What every test needs.
#pragma once

#ifdef _WIN32
#include <windows.h>
#endif

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Logs.h"
#include "tests/support/TestFiles.h"

namespace sentiq {

using namespace std::chrono_literals;
using namespace test;
using namespace testing;
using Lines = std::vector<std::string>;

}  // namespace sentiq
