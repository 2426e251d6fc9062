#include "styletools/doctor_report.hpp"

#include <algorithm>
#include <iterator>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view heading_marker = "#";
constexpr std::string_view rule_of_marks = "--------------------";
constexpr std::array<std::string_view, doctor_checks.size()> names{
    "typ", "road-class", "resolution", "level", "tags", "unused", "style", "places", "mkgmap", "names"};

std::string columns(const DoctorRow& row, std::string_view kind_text) {
  return row.marker + "\t" + std::string(kind_text) + "\t" + row.finding + "\t" + row.detail;
}

std::string csv_field(std::string_view text) { return '"' + replace_all(text, "\"", "\"\"") + '"'; }

std::string place_text(const DoctorRow& row) {
  if (row.file.empty()) return "";
  return row.line == 0 ? row.file : row.file + ":" + std::to_string(row.line);
}

}  // namespace

void DoctorReport::add(DoctorRow row) {
  if (row.counts()) ++issues;
  rows.push_back(std::move(row));
}

void DoctorReport::append(DoctorReport other) {
  const auto is_known = [this](const DoctorRow& row) {
    return row.kind_text == whole_style && std::any_of(rows.begin(), rows.end(), [&](const DoctorRow& known) {
             return known.kind_text == whole_style && known.file == row.file && known.line == row.line &&
                    known.detail == row.detail;
           });
  };
  for (DoctorRow& row : other.rows)
    if (!is_known(row)) add(std::move(row));
}

void putheader(DoctorReport& report, const DoctorRow& section, std::string_view title) {
  DoctorRow row;
  row.check = section.check;
  row.kind = section.kind;
  row.weight = Weight::heading;
  row.marker = heading_marker;
  row.finding = title;
  report.add(row);
  row.finding = rule_of_marks;
  report.add(row);
}

std::string_view check_name(DoctorCheck check) { return names.at(static_cast<std::size_t>(check)); }

std::optional<DoctorCheck> check_named(std::string_view name) {
  for (const DoctorCheck check : doctor_checks) {
    if (check_name(check) == name) return check;
  }
  return std::nullopt;
}

std::string_view weight_name(Weight weight) {
  constexpr std::array<std::string_view, 5> weights{"heading", "note", "hint", "warning", "error"};
  return weights.at(static_cast<std::size_t>(weight));
}

std::string report_text(const DoctorReport& report) {
  std::string text;
  for (const DoctorRow& row : report.rows)
    text.append(columns(row, row.kind_text)).append(crlf);
  return text;
}

std::string report_lines(const DoctorReport& report) {
  std::string text;
  for (const DoctorRow& row : report.rows) {
    if (row.weight == Weight::heading) continue;
    const std::string place = place_text(row);
    if (!place.empty()) text.append(place).append(": ");
    text.append(weight_name(row.weight)).append(": [").append(check_name(row.check)).append("] ");
    text.append(row.kind_text);
    if (!row.key.empty()) text.append(" ").append(row.key);
    if (!row.kind_text.empty()) text.append(": ");
    text.append(row.finding);
    const bool has_colon = row.finding.ends_with(':') || row.finding.ends_with('.');
    if (!row.detail.empty()) text.append(has_colon ? " " : ": ").append(trim(row.detail));
    if (!row.other_place.empty()) text.append(" (earlier: ").append(row.other_place).append(")");
    text += '\n';
  }
  return text;
}

std::string report_csv(const DoctorReport& report) {
  std::string text = "check,weight,kind,type,file,line,finding,detail,earlier\r\n";
  for (const DoctorRow& row : report.rows) {
    if (row.weight == Weight::heading) continue;
    const std::string cells[] = {std::string(check_name(row.check)),
                                 std::string(weight_name(row.weight)),
                                 csv_field(row.kind_text),
                                 row.key,
                                 csv_field(row.file),
                                 row.line == 0 ? "" : std::to_string(row.line),
                                 csv_field(row.finding),
                                 csv_field(row.detail),
                                 csv_field(row.other_place)};
    text += join_texts({std::begin(cells), std::end(cells)}, ",");
    text += crlf;
  }
  return text;
}

std::string results_text(const DoctorReport& report, const std::string& style_folder) {
  std::string text = "Style:\t" + style_folder;
  for (const DoctorRow& row : report.rows) {
    const std::string_view kind_text = row.kind_text == "Polygons" ? "PGNS" : std::string_view(row.kind_text);
    text.append(crlf).append(columns(row, kind_text));
  }
  return text;
}

}  // namespace ferrowen
