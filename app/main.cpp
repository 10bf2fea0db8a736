#include "app/program.h"

int main(int argc, char **argv)
{
    RunProgram(argc, argv);
    return 0;
}
