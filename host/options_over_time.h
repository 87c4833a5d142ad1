#pragma once

#include <cstdint>

#include <CLI/CLI.hpp>

#include "host/command.h"

namespace zt::telemetry::host {

inline constexpr char kSimulate[] = "simulate";
inline constexpr char kWatch[] = "watch";
inline constexpr char kReport[] = "report";

/// Most hours of a command that makes records, ten years, and its random seed unless another one is told.
inline constexpr std::uint32_t kMaxHours = 87'600;
inline constexpr std::uint64_t kDefaultRandomSeed = 1;

// The commands that make or show a machine over time, with their options. What they fill in must live as long as the
// command line is read.

void AddSimulate(CLI::App& program, SimulateCommand& command);
void AddWatch(CLI::App& program, WatchCommand& command);
void AddReport(CLI::App& program, ReportCommand& command);

}  // namespace zt::telemetry::host
