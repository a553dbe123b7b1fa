#pragma once

/// Texts that are no layers, each with the one error that reading it gives.

#include <string>
#include <vector>

namespace sdf_tests {

/// A text with a caret where the error is found, and the two parts of its message.
struct Malformed
{
    const char* text;
    const char* found;
    const char* expected;
};

/// \name Tables
/// Statements in a prim; fields of a prim, of a layer; whole files.
/// @{
const std::vector<Malformed>& malformedValues();
const std::vector<Malformed>& malformedStatements();
const std::vector<Malformed>& malformedPrimMetadata();
const std::vector<Malformed>& malformedLayerMetadata();
const std::vector<Malformed>& malformedFiles();
/// @}

/// One file of the corpus.
struct MalformedFile
{
    std::string text;
    std::string error;
};

/// Makes a file of a text with a caret between what stands before and behind it.
MalformedFile malformedFile(const std::string& before, const std::string& marked, const std::string& behind,
                            const std::string& found, const std::string& expected);
/// The same for a statement in a prim.
MalformedFile malformedStatement(const std::string& marked, const std::string& found,
                                 const std::string& expected);
/// Every type of value with values of other kinds, and every reserved word where a name belongs.
std::vector<MalformedFile> malformedByRule();
/// What the public issues of OpenUSD describe, made anew.
std::vector<MalformedFile> malformedFromIssues();
/// All of them.
std::vector<MalformedFile> malformedCorpus();

/// Returns a text `count` times.
std::string repeated(const std::string& text, size_t count);

} // namespace sdf_tests
