#pragma once

#include <QMutex>
#include <QObject>
#include <QString>

class TableDictionary;

// What kind of dispenser this is and the screen geometry, in pixels, of the platform's user
// interfaces. The kind comes from the dictionary ("systemType") or else from the file
// "/opt/Merivon/systemType.txt"; the geometry from the defaults of that kind, most of which the
// dictionary overrides under the name of the property.
//
// One for the whole process; lives on the thread that asks for it first. Every setter compares
// first; a new value is stored and emits the property's own signal and then dataChanged.
class UiConfig : public QObject
{
    Q_OBJECT

public:
    // The numbers and key names are the platform's; the scene reads them too.
    enum SystemType {
        UNKNOWN,
        KRA,
        TALVO,
        TALVOGATEWAY,
        MXD, // for the scene and other programs; kept though no dispenser is taken for it here
    };
    Q_ENUM(SystemType)

    // One property a line, however long.
    // clang-format off
    Q_PROPERTY(SystemType systemType MEMBER m_systemType WRITE setSystemType NOTIFY systemTypeChanged)
    // The text of the kind in dictionary and file, "kra" for one; empty for an unknown kind.
    Q_PROPERTY(QString systemName MEMBER m_systemName WRITE setSystemName NOTIFY systemNameChanged)
    Q_PROPERTY(int brandWidth MEMBER m_brandWidth WRITE setBrandWidth NOTIFY brandWidthChanged)
    Q_PROPERTY(int brandHeight MEMBER m_brandHeight WRITE setBrandHeight NOTIFY brandHeightChanged)
    Q_PROPERTY(int brandSpacing MEMBER m_brandSpacing WRITE setBrandSpacing NOTIFY brandSpacingChanged)
    Q_PROPERTY(int screenWidth MEMBER m_screenWidth WRITE setScreenWidth NOTIFY screenWidthChanged)
    Q_PROPERTY(int screenHeight MEMBER m_screenHeight WRITE setScreenHeight NOTIFY screenHeightChanged)
    Q_PROPERTY(int videoWidth MEMBER m_videoWidth WRITE setVideoWidth NOTIFY videoWidthChanged)
    Q_PROPERTY(int videoHeight MEMBER m_videoHeight WRITE setVideoHeight NOTIFY videoHeightChanged)
    Q_PROPERTY(int videoXoffset MEMBER m_videoXoffset WRITE setVideoXoffset NOTIFY videoXoffsetChanged)
    Q_PROPERTY(int videoYoffset MEMBER m_videoYoffset WRITE setVideoYoffset NOTIFY videoYoffsetChanged)
    Q_PROPERTY(int serviceWidth MEMBER m_serviceWidth WRITE setServiceWidth NOTIFY serviceWidthChanged)
    Q_PROPERTY(int serviceHeight MEMBER m_serviceHeight WRITE setServiceHeight NOTIFY serviceHeightChanged)
    Q_PROPERTY(int mainWidth MEMBER m_mainWidth WRITE setMainWidth NOTIFY mainWidthChanged)
    Q_PROPERTY(int mainHeight MEMBER m_mainHeight WRITE setMainHeight NOTIFY mainHeightChanged)
    Q_PROPERTY(int mainXoffset MEMBER m_mainXoffset WRITE setMainXoffset NOTIFY mainXoffsetChanged)
    Q_PROPERTY(int mainYoffset MEMBER m_mainYoffset WRITE setMainYoffset NOTIFY mainYoffsetChanged)
    // Whether the platform's main screen has a gradient, and how many barrels the dispenser has.
    Q_PROPERTY(bool mainGradient MEMBER m_mainGradient WRITE setMainGradient NOTIFY mainGradientChanged)
    Q_PROPERTY(int numBarrels MEMBER m_numBarrels WRITE setNumBarrels NOTIFY numBarrelsChanged)
    // The model name as it is shown, "KRA Pro" for one, and with underscores in place of blanks.
    Q_PROPERTY(QString systemModel MEMBER m_systemModel WRITE setSystemModel NOTIFY systemModelChanged)
    Q_PROPERTY(QString system_Model MEMBER m_system_Model WRITE setSystem_Model NOTIFY system_ModelChanged)
    // The regulatory identifier of the wireless module.
    Q_PROPERTY(QString wifiFccId MEMBER m_wifiFccId WRITE setWifiFccId NOTIFY wifiFccIdChanged)
    // clang-format on

    // The one instance, made on the first call, which reads file and dictionary; it lives until the
    // process exits.
    static UiConfig* getInstance();

    // Takes the kind from dictionary or file and sets the defaults of that kind, without a signal.
    // A kind that cannot be told shows in the log and is UNKNOWN. Of the file, which must be a
    // regular one, the first 64 KiB are read.
    void initialize();

    SystemType getSystemType() const { return m_systemType; }
    QString getSystemModel() const { return m_systemModel; }
    int getNumBarrels() const { return m_numBarrels; }

    void setSystemType(SystemType to) { change(m_systemType, to, &UiConfig::systemTypeChanged); }
    void setSystemName(const QString& to)
    {
        change(m_systemName, to, &UiConfig::systemNameChanged);
    }
    void setBrandWidth(int to) { change(m_brandWidth, to, &UiConfig::brandWidthChanged); }
    void setBrandHeight(int to) { change(m_brandHeight, to, &UiConfig::brandHeightChanged); }
    void setBrandSpacing(int to) { change(m_brandSpacing, to, &UiConfig::brandSpacingChanged); }
    void setScreenWidth(int to) { change(m_screenWidth, to, &UiConfig::screenWidthChanged); }
    void setScreenHeight(int to) { change(m_screenHeight, to, &UiConfig::screenHeightChanged); }
    void setVideoWidth(int to) { change(m_videoWidth, to, &UiConfig::videoWidthChanged); }
    void setVideoHeight(int to) { change(m_videoHeight, to, &UiConfig::videoHeightChanged); }
    void setVideoXoffset(int to) { change(m_videoXoffset, to, &UiConfig::videoXoffsetChanged); }
    void setVideoYoffset(int to) { change(m_videoYoffset, to, &UiConfig::videoYoffsetChanged); }
    void setServiceWidth(int to) { change(m_serviceWidth, to, &UiConfig::serviceWidthChanged); }
    void setServiceHeight(int to) { change(m_serviceHeight, to, &UiConfig::serviceHeightChanged); }
    void setMainWidth(int to) { change(m_mainWidth, to, &UiConfig::mainWidthChanged); }
    void setMainHeight(int to) { change(m_mainHeight, to, &UiConfig::mainHeightChanged); }
    void setMainXoffset(int to) { change(m_mainXoffset, to, &UiConfig::mainXoffsetChanged); }
    void setMainYoffset(int to) { change(m_mainYoffset, to, &UiConfig::mainYoffsetChanged); }
    void setMainGradient(bool to) { change(m_mainGradient, to, &UiConfig::mainGradientChanged); }
    void setNumBarrels(int to) { change(m_numBarrels, to, &UiConfig::numBarrelsChanged); }
    void setSystemModel(const QString& to)
    {
        change(m_systemModel, to, &UiConfig::systemModelChanged);
    }
    void setSystem_Model(const QString& to)
    {
        change(m_system_Model, to, &UiConfig::system_ModelChanged);
    }
    void setWifiFccId(const QString& to) { change(m_wifiFccId, to, &UiConfig::wifiFccIdChanged); }

signals:
    void dataChanged(); // after each of those below

    void systemTypeChanged();
    void systemNameChanged();
    void brandWidthChanged();
    void brandHeightChanged();
    void brandSpacingChanged();
    void screenWidthChanged();
    void screenHeightChanged();
    void serviceWidthChanged();
    void serviceHeightChanged();
    void videoWidthChanged();
    void videoHeightChanged();
    void videoXoffsetChanged();
    void videoYoffsetChanged();
    void mainWidthChanged();
    void mainHeightChanged();
    void mainXoffsetChanged();
    void mainYoffsetChanged();
    void systemModelChanged();
    void system_ModelChanged();
    void wifiFccIdChanged();
    void mainGradientChanged();
    void numBarrelsChanged();

public:
    // Stores mainGradient and numBarrels in the dictionary, and nothing else: geometry is never
    // saved from here. Whether both were written; the second is tried even if the first fails.
    Q_INVOKABLE bool saveToDb();

    // Takes the overrides from the dictionary, and stores the present value there for each name
    // that is missing, unless the kind is unknown. True, always: what cannot be read stays as it
    // is. The signals are emitted with the lock held, so a slot must call neither this nor
    // saveToDb.
    Q_INVOKABLE bool readFromDb();

private:
    void setOwnWifiFccId();
    using ChangeSignal = void (UiConfig::*)();
    struct Tables;

    UiConfig();

    void applyDefaults(int kind);
    template <typename T>
    T setting(TableDictionary& dictionary, const char* name, const T& present);
    void readOverride(TableDictionary& dictionary, const char* name, int UiConfig::*field,
                      ChangeSignal changed);
    template <typename T> void change(T& field, const T& value, ChangeSignal changed)
    {
        if (field == value)
            return;
        field = value;
        emit(this->*changed)();
        emit dataChanged();
    }

    QMutex m_mutex;
    SystemType m_systemType = UNKNOWN;
    QString m_systemName;
    QString m_systemModel = QStringLiteral("Unknown");
    QString m_system_Model = QStringLiteral("Unknown");
    QString m_wifiFccId;
    bool m_mainGradient = false;
    int m_numBarrels = 0;
    int m_brandWidth = 0;
    int m_brandHeight = 0;
    int m_brandSpacing = 0;
    int m_screenWidth = 0;
    int m_screenHeight = 0;
    int m_serviceWidth = 0;
    int m_serviceHeight = 0;
    int m_videoWidth = 0;
    int m_videoHeight = 0;
    int m_videoXoffset = 0;
    int m_videoYoffset = 0;
    int m_mainWidth = 0;
    int m_mainHeight = 0;
    int m_mainXoffset = 0;
    int m_mainYoffset = 0;
};
