#include <cstdio>
#include <exception>
#include <new>

#include "batch/batch.h"

int main(int argc, char **argv)
{
    try {
        return RunBatch(argc, argv);
    } catch (const std::bad_alloc &) {
        fprintf(stderr, "sarkelo-grow: not enough memory\n");
        return kMemoryFault;
    } catch (const std::exception &fault) {
        fprintf(stderr, "sarkelo-grow: %s\n", fault.what());
        return kFileFault;
    }
}
