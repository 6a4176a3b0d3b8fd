// Encodes an XML file as Fast Infoset with the Java Fast Infoset library, for the
// interoperability tests of the reader.
//
//   java FiEncode in.xml out.fi [option=value ...]
//
// Options: minAttribute, maxAttribute (attribute value sizes that are indexed),
// minChunk, maxChunk (character chunk sizes that are indexed), encoding (the character
// encoding scheme of strings, UTF-8 or UTF-16BE).
import com.sun.xml.fastinfoset.sax.SAXDocumentSerializer;
import java.io.FileOutputStream;
import java.io.OutputStream;
import javax.xml.parsers.SAXParser;
import javax.xml.parsers.SAXParserFactory;

public class FiEncode {
    public static void main(String[] args) throws Exception {
        if (args.length < 2) {
            System.err.println("usage: FiEncode in.xml out.fi [option=value ...]");
            System.exit(2);
        }
        SAXDocumentSerializer serializer = new SAXDocumentSerializer();
        for (int i = 2; i < args.length; ++i) {
            String[] option = args[i].split("=", 2);
            switch (option[0]) {
            case "minAttribute": serializer.setMinAttributeValueSize(Integer.parseInt(option[1])); break;
            case "maxAttribute": serializer.setMaxAttributeValueSize(Integer.parseInt(option[1])); break;
            case "minChunk": serializer.setMinCharacterContentChunkSize(Integer.parseInt(option[1])); break;
            case "maxChunk": serializer.setMaxCharacterContentChunkSize(Integer.parseInt(option[1])); break;
            case "encoding": serializer.setCharacterEncodingScheme(option[1]); break;
            default:
                System.err.println("unknown option " + option[0]);
                System.exit(2);
            }
        }
        try (OutputStream out = new FileOutputStream(args[1])) {
            serializer.setOutputStream(out);
            SAXParserFactory factory = SAXParserFactory.newInstance();
            factory.setNamespaceAware(true);
            SAXParser parser = factory.newSAXParser();
            parser.setProperty("http://xml.org/sax/properties/lexical-handler", serializer);
            parser.parse(new java.io.File(args[0]), serializer);
        }
    }
}
