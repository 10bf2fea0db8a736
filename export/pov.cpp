#include "export/pov.h"

#include "growth/state.h"

static void WriteSettings(TextWriter &out);
static void WriteCamera(TextWriter &out);
static void WriteTextures(TextWriter &out);

void POVHeader(TextWriter &out)
{
    out.Print("/*\n"
              " 3D DLA structure from sarkelo by Orvandel\n"
              " Number of particles: %d\n"
              " Maximum radius: %g\n"
              "*/\n"
              "\n"
              "#declare DLARADIUS = %g;\n"
              "\n",
              ncells, growthstate.radius, growthstate.radius);
    WriteSettings(out);
    WriteCamera(out);
    WriteTextures(out);
}

void POVFooter(TextWriter &out)
{
    out.Print("// An instance of the dla structure\n"
              "object {\n"
              " SARKELO\n");
    if (!HasBranchTextures())
        out.Print(" texture { DLATEXTURE0 }\n");
    out.Print(" /*\n"
              " transform {\n"
              "  scale <1,1,1>\n"
              "  rotate <0,0,0>\n"
              "  translate <0,0,0>\n"
              " }\n"
              " */\n"
              "}\n"
              "\n");
}

bool HasBranchTextures()
{
    return growthstate.association && growthstate.nroots >= 2;
}

static void WriteSettings(TextWriter &out)
{
    out.Print("global_settings {\n"
              " assumed_gamma 1\n"
              " max_trace_level 5 // increase this if necessary\n"
              " ambient_light rgb <1,1,1>\n"
              "}\n"
              "\n"
              "// Background colour\n"
              "background {\n"
              " color rgb <0,0,0>\n"
              "}\n"
              "\n"
              "// Function that controls the radius of the branches\n"
              "// Change this for different radii distributions\n"
              "#local MINR = %g;\n"
              "#local MAXR = %g;\n"
              "#local CalcRadius = function(r,rmax)\n"
              "{\n"
              " MINR + (MAXR - MINR) * log(r+1) / log(rmax+1)\n"
              "}\n"
              "\n",
              growthstate.thickto, growthstate.thickfrom);
}

static void WriteCamera(TextWriter &out)
{
    out.Print("// Camera\n"
              "#declare VP = <%g,%g,%g>;\n"
              "#declare VU = <%g,%g,%g>;\n"
              "#declare LEFTRIGHT = -1; // Left or right handed\n"
              "#declare VZ = 1.0; // Zoom\n"
              "camera {\n"
              " perspective\n"
              " location VZ*VP\n"
              " up y\n"
              " right LEFTRIGHT*image_width*x/image_height\n"
              " angle %g // Aperture in degrees\n"
              " sky VU\n"
              " look_at <0,0,0> // Assumes seeds at or near origin\n"
              "}\n"
              "\n"
              "// Light sources\n"
              "light_source {\n"
              " VP // At the camera\n"
              " color rgb <1,1,1>/2\n"
              "}\n"
              "light_source {\n"
              " DLARADIUS*<0,0,1>\n"
              " color rgb <1,1,1>\n"
              "}\n"
              "\n",
              camera.vp, camera.vu, camera.aperture);
}

static void WriteTextures(TextWriter &out)
{
    out.Print("#declare thefinish = finish {\n"
              " ambient 0.1\n"
              " diffuse 0.7\n"
              " specular 0.5\n"
              "}\n"
              "#declare thenormal = normal {\n"
              " granite\n"
              " scale 1\n"
              "}\n"
              "// Default texture for the branches\n");
    for (int k = 0; k < growthstate.nroots; k++)
        out.Print("#declare DLATEXTURE%d = texture {\n"
                  " pigment { rgb %g*<185/256,190/256,50/256> }\n"
                  " finish { thefinish }\n"
                  " normal { thenormal }\n"
                  "}\n"
                  "\n",
                  k, (k + 1) / static_cast<double>(growthstate.nroots));
}
