#include "StateWriter.h"

QWStateWriter::~QWStateWriter() = default;
