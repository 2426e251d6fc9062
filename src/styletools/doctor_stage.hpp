// What the Style Doctor does for a person: finds the TYP file, writes the results file, exports its list.
#pragma once

#include <optional>
#include <string>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "styletools/style_doctor.hpp"

namespace ferrowen {

// The TYP file at a path; nothing when it is not there or cannot be read, which has been told then.
std::optional<TypFile> find_typ(const std::string& path, const StyleLocation& style, Prompts& prompts);

// "typ.txt" in the program folder.
std::string results_path(const Workspace& workspace);
// "Command13": the whole report into the results file, which is shown then. False when there is none.
bool write_results(const Workspace& workspace, const StyleLocation& style, const TypFile& typ,
                   std::size_t lowest_draw_order, Prompts& prompts);

enum class ReportFormat : std::uint8_t { text, csv };
// The report list into a file that the person names. True when it was written.
bool export_report(const DoctorReport& report, ReportFormat format, Prompts& prompts);

}  // namespace ferrowen
