#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tweenery {

/// What a method of a generated class does, a statement at a time, in words that both languages
/// share.
struct MethodCalls {
    std::string name;  // with what it takes: "addHop(removedOnCompletion, completion)"
    std::vector<std::string> statements;
};

/// The methods that depend on the project: the one that sets up the scene, and those that add and
/// remove animations. What cannot be read becomes a statement that says so.
std::vector<MethodCalls> callsOfObjectiveC(std::string_view source);
std::vector<MethodCalls> callsOfSwift(std::string_view source);

}  // namespace tweenery
