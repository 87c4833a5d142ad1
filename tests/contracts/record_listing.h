#pragma once

#include <google/protobuf/descriptor.h>

#include <string>
#include <vector>

// The contract as lines of text, for comparing what is built with what was agreed. A file reads
//
//   file NAME: SYNTAX, package PACKAGE
//   message NAME BELOW THE PACKAGE
//     NUMBER NAME: optional|repeated TYPE, JSON NAME
//
// with the fields of a message in the order of their numbers, and what begins with "#" is a comment.
namespace zt::tests {

/// The lines of one file of the contract.
std::string ListingOf(const google::protobuf::FileDescriptor& file);

/// The lines of the whole contract, as they lie in agreed_records.txt.
std::string ListingOfTheContract();

/// The part of `listing` that tells of the file `name`, empty where there is none.
std::string PartOf(const std::string& listing, const std::string& name);

/// The lines of `listing` that begin with `kind` and a blank.
std::vector<std::string> LinesOf(const std::string& listing, const std::string& kind);

/// What `listing` says of fields, each line behind the name of its message.
std::vector<std::string> FieldsOf(const std::string& listing);

/// Everything that `listing` says, each line making sense by itself.
std::vector<std::string> StatementsOf(const std::string& listing);

/// The lines of `lines` that are not among `others`, each ended by a line break.
std::string Without(const std::vector<std::string>& lines, const std::vector<std::string>& others);

}  // namespace zt::tests
