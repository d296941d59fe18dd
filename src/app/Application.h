#pragma once

#include "app/SingleApplication.h"

// The updater's application object: a SingleApplication that knows who it is. Its name is also the
// service under which the updater's system messages are recorded.
class Application : public SingleApplication
{
    Q_OBJECT

public:
    Application(int& argc, char** argv);
};
