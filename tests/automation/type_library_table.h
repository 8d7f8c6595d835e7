// The published interface as it must stay for ever, written down by hand.
#pragma once

#include <string>
#include <vector>

namespace published {

/// A parameter: its name, its type (a star for by reference), and passing and default spelt like
/// "in,out,optional=True".
struct Parameter {
    std::string name;
    std::string type;
    std::string passing;
};

struct Member {
    long id;
    std::string kind;  ///< get, put, putref, method
    std::string name;
    std::vector<Parameter> parameters;
    std::string result;  ///< empty without
};

struct Interface {
    std::string name;
    std::vector<Member> members;  ///< in the order of the table of methods
};

struct Enumeration {
    std::string name;
    std::vector<std::pair<std::string, long>> values;
};

struct Class {
    std::string name;
    std::string interfaceName;
    std::string eventsName;  ///< empty without
    bool isControl = false;
};

/// What is known by a GUID: libraries, interfaces, events, classes, enumerations and records.
struct Identifier {
    std::string name;
    std::string guid;
};

extern const std::vector<Interface> kInterfaces;
extern const std::vector<Interface> kEvents;
extern const std::vector<Enumeration> kEnumerations;
extern const std::vector<Class> kClasses;
extern const std::vector<Identifier> kIdentifiers;

/// One line for a member, for comparing.
std::string line(const Member& member);

}  // namespace published
