#pragma once

#include <string>
#include <vector>

#include "WriterMatrix.h"
#include "model/CategoricalVariable.h"

namespace velda::test {

// A small matrix for the table exports, with every kind of value, NA and
// NU values, an inactive variable and names that need care: a blank, the
// separators of both tables, both quote characters and Latin-1 letters.
//
//            age    pay range     town            hidden   job;main,kind (cardinality)
//   A1       30     10:20         Lyon            7        clerk 1, a;b 3
//   Bob's "x" NULL  NA            Saint-\xc9tienne 8        clerk 1 and one NULL
//   caf\xe9,2 41.5  -0.5:1500     NA              NULL     NA
struct TableMatrix : WriterMatrix {
  TableMatrix() {
    const size_t age = quantitative("age", 0);
    const size_t pay = quantitative("pay range", 1);
    const size_t town = categorical("town", 0);
    const size_t hidden = quantitative("hidden", 0);
    const size_t job = categorical("job;main,kind", 1, MODE_CARDINALITY);
    matrix->variable(hidden).active = 0;

    Assertion& a1 = matrix->createAssertion("A1");
    add(a1, age, "30");
    add(a1, pay, "20");
    add(a1, pay, "10");
    add(a1, town, "Lyon");
    add(a1, hidden, "7");
    add(a1, job, "clerk");
    add(a1, job, "a;b", 3.0);

    Assertion& bob = matrix->createAssertion("Bob's \"x\"");
    add(bob, age, nullptr);
    add(bob, pay, "12", 1.0, true);
    add(bob, town, "Saint-\xc9tienne");
    add(bob, hidden, "8");
    add(bob, job, "clerk");
    add(bob, job, nullptr);

    Assertion& cafe = matrix->createAssertion("caf\xe9,2");
    add(cafe, age, "41.5");
    add(cafe, pay, "-0.5");
    add(cafe, pay, "1500");
    add(cafe, town, "Lyon", 1.0, true);
    add(cafe, hidden, nullptr);
    add(cafe, job, "clerk", 1.0, true);

    rows = {&a1, &bob, &cafe};
  }

  std::vector<const Assertion*> rows;
};

}  // namespace velda::test
