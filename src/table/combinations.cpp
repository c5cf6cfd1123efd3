#include "table/combinations.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::table {

namespace {

using Names = std::span<const std::string_view>;

// An option that changes what a table is made of, and the only options that go with it.
struct Company {
  std::string_view option;
  Names others;
};

constexpr auto _with_contexts = std::to_array<std::string_view>(
    {"output", "columns", "min-frequency", "top", "format", "na", "bom", "json-numbers"});
constexpr auto _with_statistics =
    std::to_array<std::string_view>({"output", "columns", "top", "format", "na", "bom", "json-numbers"});

constexpr auto _with_compare = std::to_array<std::string_view>(
    {"output", "columns",   "cells",  "pattern", "measures",      "sort",     "per",
     "groups", "locale",    "memory", "top",     "min-frequency", "where",    "ignore-case",
     "format", "precision", "na",     "bom",     "json-numbers",  "unsigned", "merge"});

constexpr auto _with_profile = std::to_array<std::string_view>(
    {"output", "sort", "locale", "top", "min-frequency", "where", "ignore-case", "merge", "within", "unsigned"});

constexpr auto _companies = std::to_array<Company>({
    {"contexts", _with_contexts},
    {"statistics", _with_statistics},
    {"compare", _with_compare},
    {"profile", _with_profile},
});

std::string _listed(Names names) {
  std::string text;
  for (const std::string_view name : names)
    text += fmt::format("{}--{}", text.empty() ? "" : name == names.back() ? " and " : ", ", name);
  return text;
}

}  // namespace

void check_combination(const Program& program, const std::vector<std::string>& arguments) {
  const CommandLine line = split_command_line(program, arguments);
  const auto has = [&](std::string_view key) {
    return std::any_of(line.options.begin(), line.options.end(),
                       [&](const GivenOption& given) { return given.key == key; });
  };
  if (!line.complaint.empty() || has("help") || has("version")) return;
  for (const Company& company : _companies) {
    if (!has(company.option)) continue;
    for (const GivenOption& given : line.options)
      if (given.key != company.option &&
          std::find(company.others.begin(), company.others.end(), given.key) == company.others.end())
        throw usage_error(fmt::format("--{} does not go with --{}, with which there are {} only", given.key,
                                      company.option, _listed(company.others)));
  }
}

}  // namespace colx::table
