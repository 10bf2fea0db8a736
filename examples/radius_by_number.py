"""Plots radius against number: radius_by_number.py FILE.sarkelo.h5 PICTURE.png"""
import sys, h5py, numpy, matplotlib
matplotlib.use("Agg")
import matplotlib.pyplot as plot
with h5py.File(sys.argv[1]) as file:
    distance = numpy.linalg.norm(file["particles/position"][:], axis=1)
plot.loglog(numpy.arange(1, len(distance) + 1), numpy.maximum.accumulate(distance))
plot.xlabel("number of particles")
plot.ylabel("radius")
plot.savefig(sys.argv[2])
