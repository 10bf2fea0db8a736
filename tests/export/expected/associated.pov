/*
 3D DLA structure from sarkelo by Orvandel
 Number of particles: 5
 Maximum radius: 12.5
*/

#declare DLARADIUS = 12.5;

global_settings {
 assumed_gamma 1
 max_trace_level 5 // increase this if necessary
 ambient_light rgb <1,1,1>
}

// Background colour
background {
 color rgb <0,0,0>
}

// Function that controls the radius of the branches
// Change this for different radii distributions
#local MINR = 0.01;
#local MAXR = 0.4;
#local CalcRadius = function(r,rmax)
{
 MINR + (MAXR - MINR) * log(r+1) / log(rmax+1)
}

// Camera
#declare VP = <60,0,0>;
#declare VU = <0,0,1>;
#declare LEFTRIGHT = -1; // Left or right handed
#declare VZ = 1.0; // Zoom
camera {
 perspective
 location VZ*VP
 up y
 right LEFTRIGHT*image_width*x/image_height
 angle 60 // Aperture in degrees
 sky VU
 look_at <0,0,0> // Assumes seeds at or near origin
}

// Light sources
light_source {
 VP // At the camera
 color rgb <1,1,1>/2
}
light_source {
 DLARADIUS*<0,0,1>
 color rgb <1,1,1>
}

#declare thefinish = finish {
 ambient 0.1
 diffuse 0.7
 specular 0.5
}
#declare thenormal = normal {
 granite
 scale 1
}
// Default texture for the branches
#declare DLATEXTURE0 = texture {
 pigment { rgb 0.5*<185/256,190/256,50/256> }
 finish { thefinish }
 normal { thenormal }
}

#declare DLATEXTURE1 = texture {
of 143 lines, sum 15080950103781364780
