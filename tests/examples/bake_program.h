#pragma once

#include "examples/example_program.h"

/// A test that runs `bake`.
class BakeProgram : public ExampleProgram
{
protected:
    BakeProgram() : ExampleProgram(BAKE_PROGRAM, "world.csv", "pose.svg") {}
};
