#include "foundation/Texts.h"

String::StaticText<20> TEXT_NO_DRIVER("No driver specified");
String::StaticText<22> TEXT_NO_LISTENER("No listener specified");
String::StaticText<36> TEXT_NO_GROUP_OBSERVER("NO CHANNEL-GROUP OBSERVER SPECIFIED");
