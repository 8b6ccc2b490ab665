#pragma once

namespace velda::test {

// A test-only replacement of the global operator new (FailingAllocation.cpp,
// linked only into the executables whose tests use it) that can make one
// chosen allocation fail with std::bad_alloc. Disarmed it only counts on.

// Makes the n-th allocation from now fail (1: the next one); later ones
// succeed again.
void armAllocationFailure(long n);
// Disarms; true when the armed allocation was reached and failed.
bool disarmAllocationFailure();

// Fails the n-th allocation of run(), for n = 1, 2, ..., until a run ends
// without reaching its n-th allocation (it ran to its end unhindered).
// Before each run prepare() sets up, after it check(n, struck) looks at the
// outcome; both with the failure disarmed. Returns the number of runs.
template <typename Prepare, typename Run, typename Check>
long failEachAllocationInTurn(Prepare prepare, Run run, Check check) {
  for (long n = 1;; ++n) {
    prepare();
    armAllocationFailure(n);
    run();
    const bool struck = disarmAllocationFailure();
    check(n, struck);
    if (!struck) return n;
  }
}

}  // namespace velda::test
