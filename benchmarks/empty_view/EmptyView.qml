import QtQuick 2.15

Item {
    width: 1920
    height: 1080
}
