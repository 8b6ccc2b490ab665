// Times the reduction (threshold 80) and the division (K = 5) on matrices
// generated in memory: groups of N individuals, 6 mixed variables for the
// reduction, 6 quantitative or 6 categorical ones (at most 12 categories)
// for the division. One case per process, so that the peak memory is the
// case's own:
//   velda-bench-analysis reduce|divide-quantitative|divide-categorical N GROUPS
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "common/ConsoleLog.h"
#include "common/Format.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"
#include "ops/division/Division.h"
#include "ops/reduction/AssertionReduction.h"
#include "ops/reduction/Reduction.h"

namespace {

using velda::SymbolicMatrix;

enum class Kind { Quantitative, Categorical };

// Groups g0.. of `size` individuals each, one cell per variable: numbers with
// three decimals (nearly all distinct), or categories drawn uniformly.
std::unique_ptr<SymbolicMatrix> generate(const std::vector<std::pair<Kind, int>>& variables, int size, int groups) {
  auto matrix = SymbolicMatrix::create(static_cast<size_t>(size) * groups, static_cast<size_t>(groups));
  for (size_t v = 0; v < variables.size(); ++v) {
    const std::string name = velda::format("v%zu", v);
    if (variables[v].first == Kind::Quantitative)
      matrix->appendVariable(std::make_unique<velda::QuantitativeVariable>(name));
    else
      matrix->appendVariable(std::make_unique<velda::CategoricalVariable>(name, 1, 16));
  }
  if (!matrix->declareCellVariables(variables.size(), 0)) return nullptr;
  std::mt19937 random(12345);
  for (int g = 0; g < groups; ++g) {
    velda::Assertion& group = matrix->createAssertion(velda::format("g%d", g));
    for (int i = 0; i < size; ++i) {
      velda::Individual person(velda::format("p%d_%d", g, i), variables.size());
      for (size_t v = 0; v < variables.size(); ++v) {
        const int range = variables[v].second;
        const int draw = static_cast<int>(random() % static_cast<unsigned>(range));
        if (variables[v].first == Kind::Quantitative) {
          person.cells[v].flags = velda::CELL_NUMBER;
          person.cells[v].number = draw / 1000.0;
        } else {
          const std::string category = velda::format("c%d", draw);
          static_cast<void>(matrix->variable(v).addCell(category.c_str(), person.cells[v]));
        }
      }
      velda::Individual& stored = matrix->insertIndividual(std::move(person));
      matrix->link(stored, group);
      static_cast<void>(matrix->addMember(group, stored));
    }
  }
  static_cast<void>(matrix->finish(velda::SymbolicMatrix::MemberCells::Added));
  return matrix;
}

long peakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

double cpuSecondsSince(std::clock_t start) { return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC; }

int reduce(int size, int groups) {
  // Three continuous variables, three categorical ones of 5, 20 and 60 categories.
  const std::vector<std::pair<Kind, int>> variables = {{Kind::Quantitative, 1000000}, {Kind::Categorical, 5},
                                                       {Kind::Quantitative, 100000},  {Kind::Categorical, 20},
                                                       {Kind::Quantitative, 1000000}, {Kind::Categorical, 60}};
  auto matrix = generate(variables, size, groups);
  velda::ConsoleLog console;
  std::vector<velda::SearchFigures> figures;
  const auto started = std::chrono::steady_clock::now();
  const std::clock_t cpuStarted = std::clock();
  if (!velda::Reduce(*matrix, 80, console, &figures)) {
    std::fprintf(stderr, "reduction failed\n");
    return 1;
  }
  const std::chrono::duration<double> total = std::chrono::steady_clock::now() - started;
  double slowest = 0.0;
  int64_t levels = 0;
  int capped = 0;
  for (const auto& f : figures) {
    slowest = std::max(slowest, f.seconds);
    levels = std::max(levels, f.levels);
    capped += f.capped ? 1 : 0;
  }
  std::printf(
      "reduce n=%d groups=%d: %.4f s per assertion (cpu %.4f s; slowest %.4f s), most levels %lld "
      "(cap %lld), %d of %d reached the cap, peak %ld kB\n",
      size, groups, total.count() / groups, cpuSecondsSince(cpuStarted) / groups, slowest,
      static_cast<long long>(levels), static_cast<long long>(velda::kSearchLevelCap), capped, groups, peakKilobytes());
  return 0;
}

int divide(Kind kind, int size, int groups) {
  std::vector<std::pair<Kind, int>> variables;
  if (kind == Kind::Quantitative)
    variables.assign(6, {Kind::Quantitative, 1000000});
  else
    variables = {{Kind::Categorical, 3},  {Kind::Categorical, 5},  {Kind::Categorical, 8},
                 {Kind::Categorical, 10}, {Kind::Categorical, 12}, {Kind::Categorical, 12}};
  auto matrix = generate(variables, size, groups);
  const auto started = std::chrono::steady_clock::now();
  const std::clock_t cpuStarted = std::clock();
  if (!velda::Divide(*matrix, 5)) {
    std::fprintf(stderr, "division failed\n");
    return 1;
  }
  const std::chrono::duration<double> total = std::chrono::steady_clock::now() - started;
  std::printf("divide %s n=%d groups=%d K=5: %.4f s per assertion (cpu %.4f s), peak %ld kB\n",
              kind == Kind::Quantitative ? "quantitative" : "categorical", size, groups, total.count() / groups,
              cpuSecondsSince(cpuStarted) / groups, peakKilobytes());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s reduce|divide-quantitative|divide-categorical N GROUPS\n", argv[0]);
    return 2;
  }
  const std::string what = argv[1];
  const int size = std::atoi(argv[2]);
  const int groups = std::atoi(argv[3]);
  if (size < 1 || groups < 1) return 2;
  if (what == "reduce") return reduce(size, groups);
  if (what == "divide-quantitative") return divide(Kind::Quantitative, size, groups);
  if (what == "divide-categorical") return divide(Kind::Categorical, size, groups);
  return 2;
}
