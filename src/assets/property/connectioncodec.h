#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

class PropertyTableImp;

// How a connection is told in stored data, which only the library that stores it knows:
//
//     connection = ".slib." library identifier ".asset." name of the connected table
//
// The form is a string of the archives; reading resolves it among the library's own tables.
class IConnectionCodec {
public:
    // The text for a connection to `table`.
    virtual nuo::string Encode(const PropertyTableImp& table) = 0;
    // The table that a stored text means; null when there is none. The caller takes its own
    // reference.
    virtual PropertyTableImp* Decode(nuo::string_ref text) = 0;

protected:
    ~IConnectionCodec() = default;
};

// Puts a codec in force for the values that are written and read while it lives; scopes nest. With
// none in force a connection is written by its present link text, and reads as that text alone with
// no table behind it.
class ConnectionCodecScope {
public:
    explicit ConnectionCodecScope(IConnectionCodec& codec);
    ConnectionCodecScope(const ConnectionCodecScope&) = delete;
    ConnectionCodecScope& operator=(const ConnectionCodecScope&) = delete;
    ~ConnectionCodecScope();

    // Null when none is in force.
    static IConnectionCodec* Current();

private:
    IConnectionCodec* outer_;
};

// The stored text for a table of the library `identifier`.
nuo::string StoredConnection(nuo::string_ref identifier, nuo::string_ref table);

// The table's name in a stored text: what follows the prefix of the library `identifier`, or else
// the last ".asset.", or else the whole text.
nuo::string_ref ConnectedName(nuo::string_ref identifier, nuo::string_ref text);

}  // namespace korvanet::platform::assets
