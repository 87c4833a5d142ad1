#pragma once

#include "simulation/reader/typed.h"

/// Readers of the machine's parts that are profile keys of their own; each stands in the file named beside it.
namespace zt::simulation::reader {

// device_sections.cpp
void Read(const Value& value, Clock& clock);
void Read(const Value& value, std::optional<Battery>& battery);  // null: a gap
void Read(const Value& value, Sensors& sensors);
void Read(const Value& value, BiosReply& reply);
void Read(const Value& value, LibraryDrive& drive);
void Read(const Value& value, SystemMessage& message);
/// An object is a key and a text a value, in the order given; {"fails": status} is a key that cannot be opened.
void Read(const Value& value, RegistryKey& key);

// wmi_section.cpp
void Read(const Value& value, Wmi& wmi);

// graphics_sections.cpp
void Read(const Value& value, Nvml& nvml);
void Read(const Value& value, Adlx& adlx);

// process_sections.cpp
void Read(const Value& value, Session& session);
void Read(const Value& value, Process& process);

// network_section.cpp
void Read(const Value& value, Network& network);

}  // namespace zt::simulation::reader
