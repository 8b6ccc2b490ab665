#include <new>
#include <sstream>

#include "formats/library/Coherence.h"
#include "formats/library/LibraryLog.h"
#include "formats/library/ParseContext.h"
#include "formats/library/SymbolicLibrary.h"

namespace velda::symlib {

namespace {

// The whole input. A stream that can tell its size (a file) is read in one
// piece; the rest, or a stream that cannot, is copied through a string
// stream.
std::string readAll(std::istream& input) {
  std::streambuf* buffer = input.rdbuf();
  if (!buffer) return {};
  std::string text;
  const std::streampos start = buffer->pubseekoff(0, std::ios::cur, std::ios::in);
  if (start != std::streampos(-1)) {
    const std::streampos end = buffer->pubseekoff(0, std::ios::end, std::ios::in);
    const bool back = buffer->pubseekpos(start, std::ios::in) == start;
    if (back && end != std::streampos(-1) && end > start) {
      text.resize(static_cast<size_t>(end - start));
      text.resize(static_cast<size_t>(buffer->sgetn(text.data(), static_cast<std::streamsize>(text.size()))));
    }
  }
  std::ostringstream rest;
  rest << buffer;
  text += std::move(rest).str();
  return text;
}

void announce(Diagnostics& diagnostics, const std::string& name) {
  LibraryLog::beginRun();
  diagnostics.note("Parsing the file" + name + " with the version 2.1 of the Ulme library");
}

void stopOnSymbolicSyntaxErrors(Diagnostics& diagnostics) {
  if (diagnostics.syntaxErrors() == 0) {
    diagnostics.note(" The parser detected no Syntatctic Errors ");
    return;
  }
  diagnostics.note(std::to_string(diagnostics.syntaxErrors()) + " syntactic errors reading the input file");
  diagnostics.note(" THE PROGRAM STOP");
  LibraryExit(1);
}

void stopOnSemanticErrors(Diagnostics& diagnostics) {
  if (diagnostics.semanticErrors() == 0) {
    diagnostics.note(" The parser detected no semantic Errors ");
    return;
  }
  diagnostics.note(std::to_string(diagnostics.semanticErrors()) + " semantic error were detected ");
  LibraryExit(1);
}

void stopOnCoherenceErrors(Diagnostics& diagnostics) {
  if (diagnostics.coherenceErrors() == 0) return;
  diagnostics.note(" THE PROGRAM STOP");
  LibraryExit(1);
}

[[noreturn]] void stopOnMemory() {
  LibraryLog::write("Memory allocation failed");
  LibraryExit(1);
}

}  // namespace

void ParseSymbolicFile(std::istream& input, const std::string& name, SymbolicFile& model) {
  try {
    model.clear();
    const std::string content = readAll(input);
    MetaData unused;
    ParseContext ctx(content, model, unused);
    announce(ctx.diagnostics, name);
    // A failed parse has counted its error in the diagnostics, which decide
    // just below whether the run stops.
    static_cast<void>(ctx.parse());
    stopOnSymbolicSyntaxErrors(ctx.diagnostics);
    stopOnSemanticErrors(ctx.diagnostics);
    if (ctx.scan.mode == DocumentMode::MetaXml) {
      ctx.diagnostics.coherenceError("Impossible to make a \"verifcoher\" for MetaData");
    } else {
      VerifyCoherence(model, ctx.diagnostics);
    }
    stopOnCoherenceErrors(ctx.diagnostics);
    ctx.diagnostics.note(" Parsing OK ");
  } catch (const std::bad_alloc&) {
    stopOnMemory();
  }
}

namespace {

// The metadata reader of both entry points: a refused file either ends
// the process or returns false.
[[nodiscard]] bool parseMetadata(std::istream& input, const std::string& name, MetaData& metadata, bool fatal) {
  try {
    metadata.reset();
    const std::string content = readAll(input);
    SymbolicFile unused;
    ParseContext ctx(content, unused, metadata);
    Diagnostics& diagnostics = ctx.diagnostics;
    announce(diagnostics, name);
    const bool parsed = ctx.parse();
    if (parsed && ctx.scan.mode != DocumentMode::MetaXml) {
      diagnostics.syntaxError("the file" + name + " is not a metadata file");
    }
    if (diagnostics.errors() > 0) {
      diagnostics.note(std::to_string(diagnostics.errors()) + " syntaxic errors reading the input file");
      if (fatal) diagnostics.note(" THE PROGRAM STOP");
      ShowLibraryMessageBox("Fatal parsing error:\nsyntaxic errors in metadata file");
      if (fatal) LibraryExit(1);
      metadata.reset();
      return false;
    }
    diagnostics.note(" The parser detected no Syntaxic Errors ");
    diagnostics.note(" Parsing OK ");
    return true;
  } catch (const std::bad_alloc&) {
    if (fatal) stopOnMemory();
    LibraryLog::write("Memory allocation failed");
    metadata.reset();
    return false;
  }
}

}  // namespace

void ParseMetadataFile(std::istream& input, const std::string& name, MetaData& metadata) {
  // Fatal reading ends the process on a refused file, so it never returns false.
  static_cast<void>(parseMetadata(input, name, metadata, true));
}

bool TryParseMetadataFile(std::istream& input, const std::string& name, MetaData& metadata) {
  return parseMetadata(input, name, metadata, false);
}

std::string MetadataFileName(const std::string& target) {
  const size_t slash = target.rfind('/');
  const size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
  const size_t dot = target.rfind('.');
  if (dot == std::string::npos || dot < nameStart) return target + "_meta";
  return target.substr(0, dot) + "_meta" + target.substr(dot);
}

}  // namespace velda::symlib
