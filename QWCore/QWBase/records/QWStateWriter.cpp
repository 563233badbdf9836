#include "QWStateWriter.h"

QWStateWriter::~QWStateWriter() = default;
