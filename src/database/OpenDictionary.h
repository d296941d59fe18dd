#pragma once

#include "database/OpenConnection.h"
#include "database/TableDictionary.h"

// The settings for whoever uses many at once: all over one connection, which stays open to the end
// of the scope. To open it costs more than to read.
class OpenDictionary : public TableDictionary
{
private:
    const OpenConnection m_connection;
};
