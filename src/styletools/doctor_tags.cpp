// The check of tags that values refer to and nothing sets.
#include <algorithm>
#include <unordered_set>

#include "app/osm_tag_keys.hpp"
#include "base/text.hpp"
#include "styletools/doctor_rows.hpp"
#include "styletools/tag_actions.hpp"
#include "styletools/tag_tests.hpp"

namespace ferrowen {

namespace {

using Tags = std::unordered_set<std::string>;

// Tags that mkgmap gives to objects before or while the style is applied.
constexpr std::string_view mkgmap_own[] = {
    "admin_level", "area2poi",    "boundary_name", "city",         "country",    "dest_hint", "exit_hint",
    "from-node:",  "label:",      "line2poi",      "line2poitype", "mp_created", "option:",   "postcode",
    "region",      "stylefilter", "synthesised",   "way-has-pois", "way-length", "relindex",  "cycleway",
};

bool comes_from_mkgmap(std::string_view tag) {
  constexpr std::string_view prefix = "mkgmap:";
  if (!tag.starts_with(prefix)) return false;
  tag.remove_prefix(prefix.size());
  return std::any_of(std::begin(mkgmap_own), std::end(mkgmap_own),
                     [&](std::string_view own) { return tag.starts_with(own); });
}

// Tags of this form are made by styles alone, never by map data.
bool is_private(std::string_view tag) { return tag.starts_with("mkgmap:") || tag.starts_with("tmp:"); }

// Keys that map data often has besides those of the key list; with anything behind ":" too.
constexpr std::string_view ordinary_keys[] = {
    "addr",       "alt_name",      "branch",    "brand",         "capacity", "description", "destination",
    "distance",   "ele",           "exit_to",   "from",          "height",   "int_name",    "int_ref",
    "junction",   "loc_name",      "local_ref", "maxspeed",      "nat_name", "nat_ref",     "network",
    "note",       "official_name", "old_name",  "opening_hours", "operator", "population",  "reg_name",
    "short_name", "symbol",        "to",        "width",
};

bool is_ordinary(std::string_view tag) {
  return std::find(std::begin(ordinary_keys), std::end(ordinary_keys), tag.substr(0, tag.find(':'))) !=
         std::end(ordinary_keys);
}

// The tags whose values tests compare with: "a=$b", "a!=${b}".
std::vector<std::string> compared_tags(std::string_view tests) {
  std::vector<std::string> found;
  for (std::size_t at = tests.find('$'); at != std::string_view::npos; at = tests.find('$', at + 1)) {
    std::string_view before = tests.substr(0, at);
    before = before.substr(0, before.find_last_not_of(' ') + 1);
    if (before.empty() || !contains("=<>~", before.substr(before.size() - 1))) continue;
    std::string_view tag = tests.substr(at + 1);
    if (tag.starts_with('{')) tag.remove_prefix(1);
    tag = tag.substr(0, tag.find_first_of(" =!<>~&|(){}'\""));
    if (!tag.empty()) found.emplace_back(tag);
  }
  return found;
}

class TagCheck {
 public:
  explicit TagCheck(const LoadedStyle& style) : m_style(style) {}

  DoctorReport run() {
    for (const StyleStatement& statement : m_style.rules.statements) {
      parseaddset(statement);
      collect_tested(statement);
    }
    m_set.insert(m_style.relation_tags.begin(), m_style.relation_tags.end());
    for (const OsmTagKey& known : osm_tag_keys())
      m_data.emplace(known.key);
    for (const StyleStatement& statement : m_style.rules.statements)
      examine(statement);
    if (m_report.issues == 0) add_no_issues(m_report, row_of(DoctorCheck::tags, m_style));
    return std::move(m_report);
  }

 private:
  // What the actions of a rule set or add.
  void parseaddset(const StyleStatement& statement) {
    for (const TagAction& action : tag_actions(statement.actions)) {
      if (action.form == TagAction::Form::sets) m_set.insert(action.key);
    }
  }

  // A tag that conditions test is expected in the map data.
  void collect_tested(const StyleStatement& statement) {
    const auto alternatives = parse_tests(statement.tests);
    if (!alternatives) return;
    for (const Alternative& alternative : *alternatives) {
      for (const TagTest& test : alternative)
        if (test.is_positive()) m_data.insert(test.key);
    }
  }

  void examine(const StyleStatement& statement) {
    std::vector<std::string> tags = referred_tags(statement.actions);
    const std::vector<std::string> compared = compared_tags(statement.tests);
    tags.insert(tags.end(), compared.begin(), compared.end());
    for (const std::string& type : statement.types) {
      const std::vector<std::string> more = referred_tags(type);
      tags.insert(tags.end(), more.begin(), more.end());
    }
    for (const std::string& tag : tags) {
      if (m_set.contains(tag) || !m_reported.insert(tag).second) continue;
      DoctorRow row = row_at(DoctorCheck::tags, m_style, statement.place);
      row.weight = weight_of(tag);
      row.marker = row.counts() ? finding_marker : plain_marker;
      row.finding = "'" + tag + "' not found.";
      row.detail = row.quoted = shown_rule(statement.text);
      m_report.add(std::move(row));
    }
  }

  // Nothing in the style sets it: that is nothing to worry about when the map data or mkgmap does.
  [[nodiscard]] Weight weight_of(const std::string& tag) const {
    if (comes_from_mkgmap(tag)) return Weight::note;
    if (is_private(tag)) return Weight::warning;
    return m_data.contains(tag) || is_ordinary(tag) ? Weight::note : Weight::hint;
  }

  const LoadedStyle& m_style;
  DoctorReport m_report;
  Tags m_set, m_data, m_reported;
};

}  // namespace

DoctorReport parse_own(const LoadedStyle& style) { return TagCheck(style).run(); }

}  // namespace ferrowen
