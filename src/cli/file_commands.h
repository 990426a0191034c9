#pragma once

#include "cli/arguments.h"
#include "params/records.h"
#include "params/tuning_state.h"

namespace tessavo::cli {

// The commands that work on files alone.

int runNew(const Arguments& arguments, const CommandContext& context);
int runShow(const Arguments& arguments, const CommandContext& context);
int runDiff(const Arguments& arguments, const CommandContext& context);
int runEdit(const Arguments& arguments, const CommandContext& context);
int runExport(const Arguments& arguments, const CommandContext& context);
int runImport(const Arguments& arguments, const CommandContext& context);
int runCurve(const Arguments& arguments, const CommandContext& context);

/// Puts a loaded store into a fresh state, with one set current and its image and coefficients in step.
void takeStore(TuningState& tuning, const ParameterStore& store, std::size_t setIndex,
               std::uint32_t filterMode);

/// The same for a set that leaves as an image, with the input equalizer switched as the arguments say.
void takeSetToSend(TuningState& tuning, const ParameterStore& store, const Arguments& arguments);

/// Notes a set that has the input equalizer off when its image has it on and nobody asked for that.
void noteInputEq(const ParameterStore& store, const Arguments& arguments, Reporter& reporter);

}  // namespace tessavo::cli
