// The commands, one file each (`settings_command.cpp`, ...).
#pragma once

#include "cli/command_line.hpp"
#include "cli/exit_status.hpp"
#include "cli/session.hpp"

namespace ferrowen {

ExitStatus run_command(Session& session, const SettingsArguments& arguments);
ExitStatus run_command(Session& session, const SplitArguments& arguments);
ExitStatus run_command(Session& session, const TilesArguments& arguments);
ExitStatus run_command(Session& session, const BuildArguments& arguments);
ExitStatus run_command(Session& session, const LanguageArguments& arguments);
ExitStatus run_command(Session& session, const MapsArguments& arguments);
ExitStatus run_command(Session& session, const UnusedMapsArguments& arguments);
ExitStatus run_command(Session& session, const HgtArguments& arguments);
ExitStatus run_command(Session& session, const ContoursArguments& arguments);
ExitStatus run_command(Session& session, const UnzipArguments& arguments);
ExitStatus run_command(Session& session, const MergeArguments& arguments);

}  // namespace ferrowen
