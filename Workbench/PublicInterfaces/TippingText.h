// TippingText.h: a stamping frame in words and as JSON, with the undercuts that it leaves.

#ifndef TIPPINGTEXT_H
#define TIPPINGTEXT_H

#include "JobModel.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace voz::workbench
{

std::string TippingAsText(Tipping const & i_tipping);
nlohmann::json TippingAsJson(Tipping const & i_tipping, MeshModel const & i_model); // ids of the mesh file

} // namespace voz::workbench

#endif
