#include "app/program.h"
#include "archive/rescue.h"
#include "viewer/aggregate_dialog.h"

int main(int argc, char **argv)
{
    PrepareRescue(DescribeWindowRun);
    RunProgram(argc, argv);
    return 0;
}
