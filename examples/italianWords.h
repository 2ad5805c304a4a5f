#pragma once

#include "examples/italian.h"

#include <vector>

/// The words that names and addresses are made of.
namespace examples::italian {

const std::vector<Town>& Towns();
const std::vector<const char16_t*>& Streets();
const std::vector<const char16_t*>& Surnames();
const std::vector<const char16_t*>& MenNames();
const std::vector<const char16_t*>& WomenNames();
/// What a company does: "Officine Meccaniche", "Carpenteria".
const std::vector<const char16_t*>& Trades();
/// "S.r.l.", "S.p.A.", ...
const std::vector<const char16_t*>& CompanyForms();

} // namespace examples::italian
