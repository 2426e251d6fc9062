// A map as a build leaves it, and an empty store to register it in.
#pragma once

#include <doctest/doctest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/files.hpp"
#include "pipeline/registration.hpp"
#include "support/stand_in.hpp"

namespace ferrowen::test {

inline std::string typ_of_family(int fid) {
  std::string typ(0x40, 'T');
  typ[0x2F] = static_cast<char>(fid & 0xFF);
  typ[0x30] = static_cast<char>(fid >> 8);
  return typ;
}

struct Built : StandIn {
  Built() : StandIn("regi ster"), registry(embedded_registry(home / "registry.reg")) {
    set("map-name=My Map; register=1; overview-name=abc; fid=1000");
    build();
  }
  void build() {
    workspace.built_files.clear();
    for (const auto& [name, bytes] :
         std::vector<std::pair<const char*, std::string>>{{"13224385.img", "tile"},
                                                          {"ovm_13224385.img", "overview of the tile"},
                                                          {"abc.img", "overview"},
                                                          {"abc.mdx", "index"},
                                                          {"abc_mdr.img", "index of names"},
                                                          {"abc.tdb", tdb},
                                                          {"gmapsupp.img", "device"},
                                                          {"abc.nsi", "script"},
                                                          {"my.typ", typ_of_family(6324)},
                                                          {"xmy.typ", typ_of_family(1000)}})
      workspace.built_files.push_back(home.write("out/" + std::string(name), bytes));
  }
  StageResult register_map(const HeldFiles& held = {}) {
    report = {};
    prompts.said.clear();
    return register_built_map(workspace, prompts, progress, *registry, report, held);
  }
  StageResult remove(const std::string& name, const HeldFiles& held = {}) {
    prompts.said.clear();
    return remove_registered_map(workspace, prompts, progress, *registry, {name}, held);
  }
  // A family of somebody else, with these values in its subkey.
  void add_family(const std::string& name, const std::string& fid_bytes, const std::string& location,
                  const std::string& tdb_path = "") {
    RegistrationFacts facts{name, fid_bytes, location, location, tdb_path, "", "", "", registry->is_64bit()};
    REQUIRE(registry->import_file(home.write("other.reg", encode_registry_text(registration_text(facts))), {})
                .ok());
  }
  std::string folder() { return home / "out" + platform::separator + "My_Map"; }
  std::string in_folder(const std::string& name) { return platform::join(folder(), name); }

  std::string tdb = std::string("P?\0\x01\0\xE8\x03\x97\x01", 9);
  std::unique_ptr<Registry> registry;
  BuildReport report;
};

}  // namespace ferrowen::test
