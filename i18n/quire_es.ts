<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>QObject</name>
    <message>
        <source>Input command has insufficient arguments.</source>
        <comment>orvex error</comment>
        <translation>El comando introducido no tiene suficientes argumentos.</translation>
    </message>
    <message>
        <source>Input argument not recognized.</source>
        <comment>orvex error</comment>
        <translation>Argumento de entrada no reconocido.</translation>
    </message>
    <message>
        <source>Subdirectory limit reached.</source>
        <comment>orvex error</comment>
        <translation>Se ha alcanzado el límite de subdirectorios.</translation>
    </message>
    <message>
        <source>Command is not authorized.</source>
        <comment>orvex error</comment>
        <translation>Comando no autorizado.</translation>
    </message>
    <message>
        <source>Improper command syntax.</source>
        <comment>orvex error</comment>
        <translation>Sintaxis de comando incorrecta.</translation>
    </message>
    <message>
        <source>Queue only allowed at lowest level.</source>
        <comment>orvex error</comment>
        <translation>Las colas solo se permiten en el nivel inferior.</translation>
    </message>
    <message>
        <source>System error.</source>
        <comment>orvex error</comment>
        <translation>Error del sistema.</translation>
    </message>
    <message>
        <source>Entry already exists.</source>
        <comment>orvex error</comment>
        <translation>La entrada ya existe.</translation>
    </message>
    <message>
        <source>Entry no longer exists.</source>
        <comment>orvex error</comment>
        <translation>La entrada ya no existe.</translation>
    </message>
    <message>
        <source>Destination invalid.</source>
        <comment>orvex error</comment>
        <translation>Destino no válido.</translation>
    </message>
    <message>
        <source>Story currently being edited.</source>
        <comment>orvex error</comment>
        <translation>La noticia se está editando en este momento.</translation>
    </message>
    <message>
        <source>Story/directory/queue locked.</source>
        <comment>orvex error</comment>
        <translation>La noticia, el directorio o la cola están bloqueados.</translation>
    </message>
    <message>
        <source>Queue is purge locked (purge/remove).</source>
        <comment>orvex error</comment>
        <translation>La cola está bloqueada contra la purga (purgar/eliminar).</translation>
    </message>
    <message>
        <source>Queue is not empty.</source>
        <comment>orvex error</comment>
        <translation>La cola no está vacía.</translation>
    </message>
    <message>
        <source>Invalid from current special mode.</source>
        <comment>orvex error</comment>
        <translation>No válido en el modo especial actual.</translation>
    </message>
    <message>
        <source>Can&apos;t find a keyword.</source>
        <comment>orvex error</comment>
        <translation>No se encuentra una palabra clave.</translation>
    </message>
    <message>
        <source>Queue doesn&apos;t allow batch operation.</source>
        <comment>orvex error</comment>
        <translation>La cola no admite operaciones por lotes.</translation>
    </message>
    <message>
        <source>No such user.</source>
        <comment>orvex error</comment>
        <translation>No existe ese usuario.</translation>
    </message>
    <message>
        <source>User not logged in.</source>
        <comment>orvex error</comment>
        <translation>El usuario no ha iniciado sesión.</translation>
    </message>
    <message>
        <source>User logged in (no message to send).</source>
        <comment>orvex error</comment>
        <translation>El usuario ha iniciado sesión (no hay ningún mensaje que enviar).</translation>
    </message>
    <message>
        <source>Read-only, no typing allowed.</source>
        <comment>orvex error</comment>
        <translation>Solo lectura, no se puede escribir.</translation>
    </message>
    <message>
        <source>Could not open map story.</source>
        <comment>orvex error</comment>
        <translation>No se pudo abrir la noticia de asignación.</translation>
    </message>
    <message>
        <source>No entry in map story.</source>
        <comment>orvex error</comment>
        <translation>No hay ninguna entrada en la noticia de asignación.</translation>
    </message>
    <message>
        <source>User identification not accepted.</source>
        <comment>orvex error</comment>
        <translation>No se ha aceptado la identificación de usuario.</translation>
    </message>
    <message>
        <source>Directory or queue is empty.</source>
        <comment>orvex error</comment>
        <translation>El directorio o la cola están vacíos.</translation>
    </message>
    <message>
        <source>Move converted to duplicate.</source>
        <comment>orvex error</comment>
        <translation>El traslado se ha convertido en una duplicación.</translation>
    </message>
    <message>
        <source>System offline message.</source>
        <comment>orvex error</comment>
        <translation>Mensaje: el sistema está fuera de línea.</translation>
    </message>
    <message>
        <source>Refresh mode on.</source>
        <comment>orvex error</comment>
        <translation>El modo de actualización está activado.</translation>
    </message>
    <message>
        <source>Print the message in the packet.</source>
        <comment>orvex error</comment>
        <translation>Mostrar el mensaje del paquete.</translation>
    </message>
    <message>
        <source>Unable to send mail.</source>
        <comment>orvex error</comment>
        <translation>No se puede enviar el correo.</translation>
    </message>
    <message>
        <source>Password requested was too short.</source>
        <comment>orvex error</comment>
        <translation>La contraseña solicitada era demasiado corta.</translation>
    </message>
    <message>
        <source>Batch MOVE, DUP, KILL partial failure.</source>
        <comment>orvex error</comment>
        <translation>Fallo parcial de MOVE, DUP, KILL por lotes.</translation>
    </message>
    <message>
        <source>Command in progress.</source>
        <comment>orvex error</comment>
        <translation>Comando en curso.</translation>
    </message>
    <message>
        <source>Database element name too long.</source>
        <comment>orvex error</comment>
        <translation>El nombre del elemento de la base de datos es demasiado largo.</translation>
    </message>
    <message>
        <source>Queue is being ordered.</source>
        <comment>orvex error</comment>
        <translation>La cola se está ordenando.</translation>
    </message>
    <message>
        <source>This name is being used for a group.</source>
        <comment>orvex error</comment>
        <translation>Este nombre ya se usa para un grupo.</translation>
    </message>
    <message>
        <source>Read-only wire story.</source>
        <comment>orvex error</comment>
        <translation>Noticia de agencia de solo lectura.</translation>
    </message>
    <message>
        <source>Queue is up to date.</source>
        <comment>orvex error</comment>
        <translation>La cola está actualizada.</translation>
    </message>
    <message>
        <source>No form for new story.</source>
        <comment>orvex error</comment>
        <translation>No hay ningún formulario para la nueva noticia.</translation>
    </message>
    <message>
        <source>ZEKO syntax error on story save.</source>
        <comment>orvex error</comment>
        <translation>Error de sintaxis ZEKO al guardar la noticia.</translation>
    </message>
    <message>
        <source>Open of old version for copying failed.</source>
        <comment>orvex error</comment>
        <translation>No se pudo abrir la versión anterior para copiarla.</translation>
    </message>
    <message>
        <source>No devices to monitor.</source>
        <comment>orvex error</comment>
        <translation>No hay dispositivos que supervisar.</translation>
    </message>
    <message>
        <source>Queue doesn&apos;t allow batch print.</source>
        <comment>orvex error</comment>
        <translation>La cola no admite la impresión por lotes.</translation>
    </message>
    <message>
        <source>Queue is production locked.</source>
        <comment>orvex error</comment>
        <translation>La cola está bloqueada para producción.</translation>
    </message>
    <message>
        <source>The news system is offline.</source>
        <comment>nrcs login error</comment>
        <translation>El sistema de redacción está fuera de línea.</translation>
    </message>
    <message>
        <source>Your client system is not part of the news system configuration.</source>
        <comment>nrcs login error</comment>
        <translation>Su equipo cliente no forma parte de la configuración del sistema de redacción.</translation>
    </message>
    <message>
        <source>Resource is not available. Please attempt to connect to a different server.</source>
        <comment>nrcs login error</comment>
        <translation>El recurso no está disponible. Intente conectarse a otro servidor.</translation>
    </message>
    <message>
        <source>The news system has run out of resources for new sessions.</source>
        <comment>nrcs login error</comment>
        <translation>El sistema de redacción se ha quedado sin recursos para nuevas sesiones.</translation>
    </message>
    <message>
        <source>Your client system is not listed as authorized for connection to the news system.</source>
        <comment>nrcs login error</comment>
        <translation>Su equipo cliente no figura entre los autorizados a conectarse al sistema de redacción.</translation>
    </message>
    <message>
        <source>Your client application version is incompatible with your selected News Server.  Please select another server.</source>
        <comment>nrcs login error</comment>
        <translation>La versión de su aplicación cliente no es compatible con el servidor de redacción seleccionado. Seleccione otro servidor.</translation>
    </message>
    <message>
        <source>Invalid user name or password.</source>
        <comment>nrcs login error</comment>
        <translation>Nombre de usuario o contraseña no válidos.</translation>
    </message>
    <message>
        <source>News server not found.</source>
        <comment>nrcs login error</comment>
        <translation>No se encuentra el servidor de redacción.</translation>
    </message>
    <message>
        <source>Unexpected error, code = x%1.</source>
        <comment>error message</comment>
        <translation>Error inesperado, código = x%1.</translation>
    </message>
</context>
<context>
    <name>Quire::DirectoryModel</name>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
</context>
<context>
    <name>Quire::QueueModel</name>
    <message>
        <source>Lock</source>
        <translation>Bloqueo</translation>
    </message>
    <message>
        <source>Words</source>
        <translation>Palabras</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>Ritmo</translation>
    </message>
    <message>
        <source>Break</source>
        <translation>Pausa</translation>
    </message>
    <message>
        <source>Float</source>
        <translation>Flotante</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>Retenida</translation>
    </message>
    <message>
        <source>Wire</source>
        <translation>Agencia</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>Correo</translation>
    </message>
    <message>
        <source>Queue</source>
        <translation>Cola</translation>
    </message>
    <message>
        <source>Story</source>
        <translation>Noticia</translation>
    </message>
</context>
<context>
    <name>Quire::StoryFieldsModel</name>
    <message>
        <source>Field</source>
        <translation>Campo</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Valor</translation>
    </message>
</context>
</TS>
