#include <cstdio>
#include <new>

#include "batch/batch.h"

int main(int argc, char **argv)
{
    try {
        return RunBatch(argc, argv);
    } catch (const std::bad_alloc &) {
        fprintf(stderr, "sarkelo-grow: not enough memory\n");
        return kMemoryFault;
    }
}
