// MaterialDeck.h: a material out of a deck of the one-step solver, as a material of the database.

#ifndef MATERIALDECK_H
#define MATERIALDECK_H

#include "MaterialDatabase.h"

#include <string>
#include <vector>

namespace voz::workbench
{

struct MaterialDeck
{
    DatabaseMaterial entry; // Young's modulus, Poisson's ratio and density are those of steel: no deck holds them
    double thickness = 0.0; // mm
    std::vector<std::string> remarks;
};

// The first material of the deck. The library's reader takes a record that is broken, or not there at all, without a
// word, and leaves zeros: what a material cannot do without is looked after here. Throws InputError, with the file and
// what is missing.
MaterialDeck ReadMaterialDeck(std::string const & i_path);

// The whole XML file of a database with this one material; it can be read as it stands.
std::string DatabaseText(MaterialDeck const & i_deck);

} // namespace voz::workbench

#endif
