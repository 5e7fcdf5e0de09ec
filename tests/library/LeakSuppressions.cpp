// LeakSuppressions.cpp: the leaks that are the system's contract; every other one is an error.

// Blocks that nobody owns: vectors from three doubles or from floats.
extern "C" __attribute__((used)) char const * __lsan_default_suppressions()
{
    return "leak:Vec::Vec(double, double, double)\n"
           "leak:Vec::Vec(float*)\n";
}
