// JobStarter.cpp: the commented job file to begin with.

#include "Job.h"

namespace voz::workbench
{

std::string StarterJob()
{
    return R"(# A forming job. Lines with # are comments; what is left out takes the value shown here, unless it is needed.
# Values carry their unit: in the key (thickness_mm = 0.78) or in the text (thickness = "0.78 mm").
# Run it with: dravo run job.toml        Check it with: dravo check job.toml
title = "My part"

[mesh]
file = "part.bdf"             # needed; Nastran bulk data, LS-DYNA keyword, OBJ or STL; relative to this file
# length_unit = "mm"          # of the mesh file: mm, cm, m, um, in; what the file says goes first
# weld_tolerance = "0.001 mm" # for STL: corners nearer than this are one node
# repair_orientation = true   # elements that run against their neighbours are turned

[blank]
thickness = "0.8 mm"          # needed

[material]
from = "mild-140-270"         # from the database ("dravo materials" lists it); or inline:
# name = "mild steel"
# K = "565 MPa"               # strength coefficient of K (e0 + e)^n
# n = 0.26                    # hardening exponent
# r = 1.79                    # normal anisotropy
# yield = "157 MPa"           # or e0 = 0.0071
# E = "210 GPa"
# poisson = 0.3
# density = "7850 kg/m3"
# [material.curve]            # in place of the power law
# strain_kind = "engineering" # or "true" (total), or "plastic" (log plastic)
# strain_percent = [0.2, 2, 5, 10, 20]
# stress_MPa = [160, 200, 240, 270, 290]

# [symmetry]
# planes = "none"             # none, xz, yz, both: the model's edge lies on y = 0, x = 0 or both
# x = "0 mm"                  # where the yz plane stands
# y = "0 mm"                  # where the xz plane stands

# [tip]
# die_line = [0, 0, 1]        # stamping direction; left out: the mean normal of the part

[friction]
coefficient = 0.12
# tools = false               # friction on punch and die as well as under the holder

[blank_holder]                # one of the three
level = 2                     # 0 none, 1 light, 2 medium, 3 strong, 4 no draw-in at all
# force_per_length = "9.4 N/mm"
# total_force = "19.6 kN"     # of the whole part, whatever the symmetry

# [[holder]]                  # a holder on some free edges
# force = "5 kN"
# nodes = [11, 12, 13]        # ids of the mesh file; or box_mm = [[x, y, z], [x, y, z]]

# [[bead]]
# force = "80 N/mm"
# points_mm = [[60, -40, 40], [60, 40, 40]]

# [[pad]]
# pressure = "2 MPa"
# set = "1"                   # element set by name or id; or elements = [...]; or box_mm = [...]

# [[constraint]]              # displacement from the part to the flat, in the stamping frame
# x = "0 mm"
# nodes = [1, 2, 3]

# [binder]                    # the surface on which the blank lies when the binder has closed, where the part is
# file = "binder.bdf"

# [auto_strain]               # the restraint at the rim that gives a major strain at one place or two
# target_point_mm = [0, 0, 0]
# target_strain = "3 %"

# [springback]                # the shape after the tools let go
# align_points_mm = [[0, 0, 0], [50, 0, 0], [0, 50, 0]]   # up to four: there the sprung shape is laid on the part
# watch_points_mm = [[80, 0, 40]]                         # the deviation there is told

# [incremental]               # with --route incremental: a deck for an explicit solver
# template = "mild-steel"     # process settings of the installation; left out: the settings' own defaults
# process_flag = false        # true: the other of the settings' two punch velocities
# process_mode = 2            # 2: the stroke ends one thickness before punch and die would touch; 0: where they would
# tool_mode = 0               # 1: contact takes punch and binder one thickness nearer to the sheet
# clearance = "0.08 mm"       # between punch and die besides the thickness
# die = "die.bdf"             # also punch, binder, blank; left out: made from the part

# [limits]
# fld0 = "36 %"               # left out: from thickness and n
# safety_margin = "10 %"
# thinning = "25 %"           # thinner than this is failure, whatever the curve says; 0: off
# thinning_margin = "20 %"

# [output]
# folder = "out"              # left out: out, in the current folder
# report = true
# vtu = true
# dxf = true
# svg = true
# tables = false
# dyna = false                # the formed blank as an LS-DYNA deck with thickness and strains
# nastran = false             # and as NASTRAN bulk data
# displacements = false       # of the nodes, as a table
)";
}

} // namespace voz::workbench
