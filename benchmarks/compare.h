#pragma once

/// @file
/// Each benchmark sets a function of the library beside a peer that does the same work on the same data, and
/// prints the ratio of their times. The two run in turns in one process, on one thread; of several repetitions
/// the fastest of each counts, being the one that was disturbed least.

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

/// Does the work once.
using work = std::function<void()>;

void add_comparison(const std::string& label, double goal, const work& ours, const work& peer);

/// Defined by each benchmark: makes the data and adds the comparisons.
void register_comparisons();

#define ZORV_COMPARE(label, goal, ours, peer) ::add_comparison(label, goal, ours, peer)
