#include "ScoreService/Teams.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace kestrow::service {
namespace {

// Sides that appear in older match files only.
const std::vector<Team>& formerTeams() {
  static const std::vector<Team> teams{
      {"Royal Challengers Bangalore", "RCB"},
      {"Delhi Daredevils", "DD"},
      {"Kings XI Punjab", "KXIP"},
      {"Deccan Chargers", "DEC"},
      {"Pune Warriors", "PWI"},
      {"Kochi Tuskers Kerala", "KTK"},
      {"Gujarat Lions", "GL"},
      {"Rising Pune Supergiants", "RPS"},
      {"Rising Pune Supergiant", "RPS"},
  };
  return teams;
}

char capital(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                              : character;
}

// The first character of UTF-8 text, whole.
std::string_view firstCharacter(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
    ++length;
  }
  return text.substr(0, length);
}

std::vector<std::string_view> words(std::string_view text) {
  std::vector<std::string_view> found;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end > 0) found.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return found;
}

}  // namespace

const std::vector<Team>& leagueTeams() {
  static const std::vector<Team> teams{
      {"Mumbai Indians", "MI"},
      {"Chennai Super Kings", "CSK"},
      {"Royal Challengers Bengaluru", "RCB"},
      {"Kolkata Knight Riders", "KKR"},
      {"Sunrisers Hyderabad", "SRH"},
      {"Rajasthan Royals", "RR"},
      {"Delhi Capitals", "DC"},
      {"Punjab Kings", "PBKS"},
      {"Gujarat Titans", "GT"},
      {"Lucknow Super Giants", "LSG"},
  };
  return teams;
}

std::string shortCode(std::string_view teamName) {
  for (const auto* teams : {&leagueTeams(), &formerTeams()}) {
    for (const Team& team : *teams) {
      if (team.name == teamName) return team.shortName;
    }
  }
  const auto parts = words(teamName);
  std::string code;
  if (parts.size() >= 2) {
    for (const auto part : parts) code += firstCharacter(part);
  } else if (!parts.empty()) {
    auto rest = parts.front();
    for (int i = 0; i < 3 && !rest.empty(); ++i) {
      code += firstCharacter(rest);
      rest.remove_prefix(firstCharacter(rest).size());
    }
  }
  std::ranges::transform(code, code.begin(), capital);
  return code;
}

std::pair<Team, Team> namedTeams(std::string_view first, std::string_view second) {
  std::pair<Team, Team> teams{{std::string(first), shortCode(first)},
                              {std::string(second), shortCode(second)}};
  if (teams.first.shortName == teams.second.shortName) teams.second.shortName += '2';
  return teams;
}

}  // namespace kestrow::service
