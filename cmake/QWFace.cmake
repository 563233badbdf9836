# What is public is so by its place: headers at the top of these folders of QWCore. The rooms below them, and what puts the
# product together, stay at home.
set(QW_FACE_FOLDERS
    QWPlatform QWPlatform/appkit QWPlatform/foundation QWPlatform/network QWPlatform/plugins
    QWBase QWBase/tables
    QWUtilities/controllers QWUtilities/plugins QWUtilities/recorder QWUtilities/shell QWUtilities/shortcuts)
