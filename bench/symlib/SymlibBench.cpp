// Times the symbolic-file library on a generated symbolic text file of N
// assertions x 10 variables (continue, inter_continue, nominal,
// mult_nominal_Modif, mult_nominal, twice): the read-back with every check,
// then the XML write. Figures go to standard error, since the reader echoes
// every string to standard output:
//   velda-bench-symlib N > /dev/null
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <random>
#include <string>

#include "formats/library/SymbolicLibrary.h"

namespace {

using velda::symlib::SymbolicFile;

constexpr const char* kKinds[] = {"continue", "inter_continue", "nominal", "mult_nominal_Modif", "mult_nominal"};
constexpr int kVariables = 10;

const char* kindOf(int v) { return kKinds[v % 5]; }

std::string variableItem(int v) {
  char text[160];
  const std::string kind = kindOf(v);
  const char letter = static_cast<char>('B' + v);
  if (kind == "continue" || kind == "inter_continue") {
    std::snprintf(text, sizeof text, "  (%d, %s, \"\", \"A%c00\", \"v%d\", 0, 0, 0, 1000)", v + 1, kind.c_str(), letter,
                  v);
    return text;
  }
  std::snprintf(text, sizeof text, "  (%d, %s, \"\", \"A%c00\", \"v%d\", %s0, 0, 5,\n     (", v + 1, kind.c_str(),
                letter, v, kind == "mult_nominal_Modif" ? "proba, " : "");
  std::string item = text;
  for (int c = 1; c <= 5; ++c) {
    std::snprintf(text, sizeof text, "%s(%d, \"A%c%02d\", \"c%d\", 1 )", c > 1 ? ", \n      " : "", c, letter, c, c);
    item += text;
  }
  return item + ")\n  )";
}

std::string cellOf(int v, std::mt19937& random) {
  std::uniform_real_distribution<double> real(0, 500);
  char text[64];
  const std::string kind = kindOf(v);
  if (kind == "continue") {
    std::snprintf(text, sizeof text, "%g", real(random) * 2);
  } else if (kind == "inter_continue") {
    const double low = real(random);
    std::snprintf(text, sizeof text, "(%g:%g)", low, low + real(random));
  } else if (kind == "nominal") {
    std::snprintf(text, sizeof text, "%d", static_cast<int>(random() % 5) + 1);
  } else if (kind == "mult_nominal_Modif") {
    return "(1(0.25),2(0.5),4(0.25))";
  } else {
    return "(1,3,5)";
  }
  return text;
}

// The file as the program's symbolic text writer lays it out.
std::string generate(int assertions) {
  std::mt19937 random(7);
  std::string text =
      "KORVA = (\n\nCONTAINS = (FILES, HEADER, INDIVIDUALS, VARIABLES, RECTANGLE_MATRIX),\n\n"
      "FILES = (\nprocedure_name = \"velda\",\nversion = \"sans\",\ncreate_date = \"\",\nfiliere_name = \"\",\n"
      "filiere_path = \"\",\nbase = \"\"\n),\n\nHEADER = (\ntitle = \"bench\",\nsub_title = \"bench\",\nindiv_nb = " +
      std::to_string(assertions) +
      ",\nvar_nb = 10,\nrules_nb = 0,\nnb_var_set = 0,\nnb_indiv_set = 0,\nnb_var_nom = 0,\nnb_var_cont = 0,\n"
      "nb_var_text = 0,\nnb_var_cont_symb = 4,\nnb_var_nom_symb = 2,\nnb_var_nom_mod = 4,\nnb_na = 0,\nnb_nu = 0,\n"
      "nb_hierarchies = 0\n),\n\nINDIVIDUALS = (\n";
  char line[96];
  for (int i = 0; i < assertions; ++i) {
    std::snprintf(line, sizeof line, "%s  (%d, \"AA%02d\", \"group %d\")", i ? ",\n" : "", i + 1, i % 100, i);
    text += line;
  }
  text += "\n),\n\nVARIABLES = (\n";
  for (int v = 0; v < kVariables; ++v) text += (v ? ",\n" : "") + variableItem(v);
  text += "\n),\n\nRECTANGLE_MATRIX = (\n";
  for (int i = 0; i < assertions; ++i) {
    text += i ? ",\n  (" : "  (";
    for (int v = 0; v < kVariables; ++v) text += (v ? ", \n   " : "") + cellOf(v, random);
    text += ')';
  }
  return text + "\n)\n\n)\nEND\n\n";
}

struct Clock {
  std::chrono::steady_clock::time_point wall = std::chrono::steady_clock::now();
  std::clock_t cpu = std::clock();
  double wallSeconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - wall).count(); }
  double cpuSeconds() const { return static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC; }
};

void report(const char* what, double megabytes, const Clock& clock) {
  const double wall = clock.wallSeconds();
  const double cpu = clock.cpuSeconds();
  std::fprintf(stderr, "%-22s %8.1f MB  %7.3f s  %7.1f MB/s  (processor time %7.3f s, %7.1f MB/s)\n", what, megabytes,
               wall, megabytes / wall, cpu, megabytes / cpu);
}

}  // namespace

int main(int argc, char** argv) {
  const int assertions = argc > 1 ? std::atoi(argv[1]) : 100000;
  {
    std::ofstream out("bench.kvf", std::ios::binary);
    out << generate(assertions);
  }
  SymbolicFile model;
  Clock read;
  {
    std::ifstream in("bench.kvf", std::ios::binary);
    velda::symlib::ParseSymbolicFile(in, "bench.kvf", model);
  }
  std::ifstream sized("bench.kvf", std::ios::binary | std::ios::ate);
  report("read-back", static_cast<double>(sized.tellg()) / 1e6, read);

  Clock write;
  {
    std::ofstream out("bench.xml", std::ios::binary);
    if (!velda::symlib::WriteXmlSymbolicFile(model, out)) return 1;
  }
  std::ifstream written("bench.xml", std::ios::binary | std::ios::ate);
  report("XML write", static_cast<double>(written.tellg()) / 1e6, write);
  return 0;
}
