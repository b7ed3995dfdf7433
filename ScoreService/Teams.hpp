// Teams and the short codes that they are known by.
#pragma once

#include "KestrowCore/Match.hpp"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrow::service {

// The ten sides of the simulated league.
const std::vector<Team>& leagueTeams();

// The usual short code of a team, or one made from its name: initials of two or more words, else
// the first three letters, in capitals (ASCII letters only; other characters are kept).
std::string shortCode(std::string_view teamName);

// The two teams with short codes that differ, whatever their names.
std::pair<Team, Team> namedTeams(std::string_view first, std::string_view second);

}  // namespace kestrow::service
