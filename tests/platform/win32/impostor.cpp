// Stands in for a library that somebody has put beside the program.
extern "C" __declspec(dllexport) int IsImpostor() {
    return 1;
}
