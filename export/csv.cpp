#include "export/csv.h"

#include "growth/state.h"

void WriteCSV(TextWriter &out)
{
    out.Print("id,parent,x,y,z,flow\n");
    for (int i = 0; i < ncells; i++) {
        out.Print("%d,%d", i, cells[i].parent);
        for (const double number : {cells[i].p.x, cells[i].p.y, cells[i].p.z, cells[i].weight}) {
            out.Print(",");
            out.PutExact(number);
        }
        out.Print("\n");
    }
}
