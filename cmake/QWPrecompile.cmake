# With QW_PRECOMPILE the headers that most files need are read once, which makes a build from scratch more than twice as
# quick. They are the system's alone, so that a change in the tree recompiles no more than it would without.
set(QW_COMMON_HEADERS
    <algorithm> <array> <atomic> <chrono> <cmath> <cstdint> <cstring> <functional> <map> <memory> <mutex> <optional>
    <random> <span> <string> <string_view> <thread> <utility> <vector>
    <QApplication> <QByteArray> <QCoreApplication> <QDateTime> <QDir> <QFile> <QFileInfo> <QHash> <QKeyEvent> <QLabel>
    <QLineEdit> <QList> <QMenu> <QMenuBar> <QObject> <QPainter> <QPointer> <QProcess> <QPushButton> <QRegularExpression>
    <QSet> <QString> <QStringList> <QTemporaryDir> <QTimer> <QUrl> <QVBoxLayout> <QVariant> <QWidget>)

# Who reads them must define what was defined when they were compiled, so that is as little as can be.
if(QW_PRECOMPILE)
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/generated/headers.cpp CONTENT "")
    add_library(qw_headers OBJECT ${CMAKE_BINARY_DIR}/generated/headers.cpp)
    set_target_properties(qw_headers PROPERTIES AUTOMOC OFF UNITY_BUILD OFF)
    target_link_libraries(qw_headers PRIVATE Qt6::Core Qt6::Gui Qt6::Widgets qw_warnings)
    target_precompile_headers(qw_headers PRIVATE ${QW_COMMON_HEADERS})
endif()

# qw_precompile(target): for a target that links Qt6::Widgets and qw_warnings.
function(qw_precompile target)
    if(QW_PRECOMPILE)
        target_precompile_headers(${target} REUSE_FROM qw_headers)
    endif()
endfunction()
