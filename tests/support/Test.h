// What every test needs.
#pragma once

#ifdef _WIN32
#include <windows.h>
#endif

#include <fstream>
#include <numeric>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Logs.h"

namespace sentiq {

using namespace std::chrono_literals;
using namespace test;
using namespace testing;
using Lines = std::vector<std::string>;

}  // namespace sentiq
