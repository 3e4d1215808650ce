#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "maya/MStatus.h"
#include "maya/MTypeId.h"
#include "minihost/base/Object.h"

namespace minihost {

/// A loaded module, and what it registered.
class Module : public Object {
  public:
    Module(std::string name, std::string path, void* library)
        : name(std::move(name)), path(std::move(path)), library(library) {}

    MFn::Type apiType() const override { return MFn::kPlugin; }

    std::string name, path;
    void* library;
    std::string vendor = "Unknown", version = "Unknown";
    std::vector<MTypeId> nodeTypes, dataTypes;
    std::vector<std::string> commands, tools;
    std::string createProcedure, deleteProcedure;
};

/// The modules that are loaded. A module is a shared library with the functions initializePlugin
/// and uninitializePlugin of MFnPlugin.h.
class Modules {
  public:
    /// Loads a module by the path of its file, which ends in ".so". Empty where it went well, or
    /// the module was loaded before; else why it did not, with nothing of it left behind.
    std::string Load(const std::string& path);
    /// By the module's name, which is its file's without the ending. Refused while the scene holds
    /// nodes or data of it.
    std::string Unload(const std::string& name);
    std::shared_ptr<Module> Find(const std::string& name) const;
    std::vector<std::string> Names() const;
    /// The module that a function or object is of, null for the host's own.
    const Module* OwnerOf(const void* code) const;

  private:
    std::string WhyInUse(const Module& module) const;
    void TakeDown(Module& module);

    std::map<std::string, std::shared_ptr<Module>> modules_;
};

}  // namespace minihost
