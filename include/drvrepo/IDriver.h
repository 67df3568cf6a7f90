#ifndef DRVREPO_IDRIVER_H
#define DRVREPO_IDRIVER_H

#include <utility/IUnknown.h>
#include <utility/String.h>
#include <utility/TOVA_Vector.h>

#include <drvrepo/Export.h>

class IDriverRepository;

/// Everything that can be put into the driver repository: an object with a driver type, a
/// structured name, and knowledge of the repository that holds it. The order of the virtual
/// operations is binary contract.
///
/// The static helpers build and split driver names and name port types. They are pure functions;
/// results and arguments may be the same object.
///
/// A driver name is a sequence of components joined by "/". The first, the head, is a type word
/// and up to three decimal numbers behind blanks: "e1t1 0 3/a/b". An absent number is 4294967295.
class DRVREPO_EXPORT IDriver : public IUnknown
{
public:
    /// The identifier of IDriver.
    static TOVA_UUID const& IID();
    /// The class of driver proxies, the caller's side of a remoted driver.
    static TOVA_UUID const& CID_PROXY();
    /// The class of driver stubs, the object's side of a remoted driver.
    static TOVA_UUID const& CID_STUB();
    /// The driver type "unknown".
    static TOVA_UUID const& DID_UNKNOWN();

    /// The driver's type; the reference lives as long as the driver.
    virtual TOVA_UUID const& getDID() const = 0;
    /// The driver's name, which must not change while a repository holds the driver.
    virtual String const& getDriverName() const = 0;
    /// The repository that holds the driver, not counted; null when none does. Default: null.
    virtual IDriverRepository* getDriverRepository();
    /// Called by a repository with itself when it takes the driver in, and with null when the
    /// driver has left. Default: does nothing.
    virtual void setDriverRepository(IDriverRepository* repository);

    /// Method identifiers, for tracing and marshalling.
    class DRVREPO_EXPORT MID
    {
    public:
        /// The name of method `id` (read as signed 32 bits), null when there is none.
        static char const* NAME(long const& id);
    };

    /// Kinds of ports.
    class DRVREPO_EXPORT Port
    {
    public:
        /// What a port is, as a number.
        enum Type : unsigned int {
            TYPE_UNKNOWN = 0, ///< none of these
            TYPE_E1T1 = 1,    ///< a primary-rate line, E1 or T1
            TYPE_BRI = 2,     ///< a basic-rate line
            TYPE_FXS = 3,     ///< an analogue port that a telephone is plugged into
            TYPE_FXO = 4      ///< an analogue port that is plugged into a line
        };

        static char const* const E1T1; ///< "e1t1"
        static char const* const BRI;  ///< "bri"
        static char const* const FXS;  ///< "fxs"
        static char const* const FXO;  ///< "fxo"

        /// The text of a port type: the constants above (these very pointers), "(unknown)" for
        /// TYPE_UNKNOWN, "(invalid)" for anything else.
        static char const* NAME(Type type);
        /// The port type of a text, compared exactly; TYPE_UNKNOWN when no constant matches.
        static Type TYPE(String const& text);
    };

    /// Joins components by "/", empty ones included. Returns `name`.
    static String& BUILD_DRIVER_NAME(String& name, TOVA_Vector<String> const& components);
    /// Builds a head of type word and numbers, the second only after a first and the third only
    /// after a second, and appends each further component behind a "/". Returns `name`.
    static String& BUILD_DRIVER_NAME(String& name, String const& type, unsigned int number1,
                                     unsigned int number2, unsigned int number3,
                                     TOVA_Vector<String> const& further);
    /// The same with up to four further components; empty ones are left out.
    static String& BUILD_DRIVER_NAME(String& name, String const& type, unsigned int number1,
                                     unsigned int number2, unsigned int number3, String const& c1,
                                     String const& c2, String const& c3, String const& c4);
    /// Joins up to five components; empty ones are left out.
    static String& BUILD_DRIVER_NAME(String& name, String const& c1, String const& c2,
                                     String const& c3, String const& c4, String const& c5);

    // Each split returns the number of components of the name, the head included, also of those
    // that found no place. Missing parts come out as empty texts and absent numbers.

    /// All components.
    static unsigned int SPLIT_DRIVER_NAME(String const& name, TOVA_Vector<String>& components);
    /// Type word, numbers and the components behind the head.
    static unsigned int SPLIT_DRIVER_NAME(String const& name, String& type, unsigned int& number1,
                                          unsigned int& number2, unsigned int& number3,
                                          TOVA_Vector<String>& further);
    /// The same with the first four further components; null pointers are passed over.
    static unsigned int SPLIT_DRIVER_NAME(String const& name, String& type, unsigned int& number1,
                                          unsigned int& number2, unsigned int& number3, String* c1,
                                          String* c2, String* c3, String* c4);
    /// The first five components; null pointers are passed over.
    static unsigned int SPLIT_DRIVER_NAME(String const& name, String* c1, String* c2, String* c3,
                                          String* c4, String* c5);

    /// `oldName` with its type word replaced by `type`. Returns `name`.
    static String& REBUILD_DRIVER_NAME(String& name, String const& oldName, String const& type);
};

#endif
