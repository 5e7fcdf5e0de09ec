// BinderClosing.h: where the nodes of a flat blank lie when it has closed on the binder.

#ifndef BINDERCLOSING_H
#define BINDERCLOSING_H

#include "binder/FlatImage.h"
#include "onestep/OneStep.h"

namespace voz::binder
{

struct Closing
{
    std::vector<std::array<double, 3>> position; // per node of the part, stamping frame, m
    int onBinder = 0;                            // nodes
    int beyondRim = 0;                           // continued straight from the nearest rim
    int overOpening = 0;                         // filled smoothly between the others
    int overlapped = 0;                          // of those on the binder: where it lies over itself in the flat
};

// i_flat: the flat blank per node of the part, over the same frame as the image. Nodes that are not over the image lie
// over an opening where an inner loop of the binder surrounds them, or where those around them that are not over the
// image either reach no rim of the blank but its planes of symmetry (a binder cut by such a plane has its opening on
// its outer rim); else beyond the rim.
Closing closeOnBinder(onestep::Problem const & i_part, std::vector<std::array<double, 2>> const & i_flat,
                      FlatImage const & i_image);

} // namespace voz::binder

#endif
