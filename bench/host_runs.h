// Runs of whole hosts that are measured, and the comparison of several.
#pragma once

#include <functional>
#include <string>
#include <vector>

// A program that does a host's work, or a part of it, with the arguments that it always gets.
struct measured_host {
  std::string name;
  std::string program;
  std::vector<std::string> arguments;
};

[[noreturn]] void give_up(const std::string& what);

// Runs a host on a file, with more arguments behind its own, and gives the microseconds of
// processor time and the output. Through a pipe the faster host would sleep and wake more often,
// and pay for that too.
double cpu_time(const measured_host& host, const std::vector<std::string>& more,
                const std::string& input_file, std::string& output);

// The same of so many of a host at once in all, each with the input in a pipe of its own.
double cpu_time_together(const measured_host& host, std::size_t count, const std::string& input);

// The microseconds from a host's start to the end of its output, which comes when the process has
// gone. It has nothing to read.
double lifetime(const measured_host& host);

// The most kilobytes that a host has had after this input, idle.
double peak(const measured_host& host, const std::string& input);

struct candidate {
  std::string name;
  std::function<double()> run;
};

// Runs all in turn, so that what the machine does meanwhile hits all, and slow ones in fewer
// rounds. Prints a line for each: WORK/SET, its name, its median, and the median of its ratios to
// the first.
void compare(const std::string& name, std::size_t rounds, const std::vector<candidate>& candidates);

double median(std::vector<double> values);
