#include "app/program.h"
#include "archive/rescue.h"
#include "viewer/aggregate_dialog.h"

int main(int argc, char **argv)
{
    ArmRescue(DescribeWindowRun);
    RunProgram(argc, argv);
    return 0;
}
