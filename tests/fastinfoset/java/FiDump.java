// Prints the infoset of each file named on the command line as lines of text, so that
// a test can compare what an independent reader sees with what was meant to be written.
// A file ending in ".xml" is read by the platform's XML parser, any other file by the
// Fast Infoset SAX parser. Output, in UTF-8, per file:
//   == <file name>
//   start {namespace}qname
//   attr {namespace}qname="value"     (in document order)
//   text "characters"                 (adjacent character events joined)
//   end {namespace}qname
// or "error <message>" when the file can't be read.

import com.sun.xml.fastinfoset.sax.SAXDocumentParser;

import java.io.FileInputStream;
import java.io.InputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;

import javax.xml.parsers.SAXParserFactory;

import org.xml.sax.Attributes;
import org.xml.sax.InputSource;
import org.xml.sax.XMLReader;
import org.xml.sax.helpers.DefaultHandler;

public class FiDump {
    static class Dump extends DefaultHandler {
        private final PrintStream out;
        private final StringBuilder text = new StringBuilder();

        Dump(PrintStream out) { this.out = out; }

        private void flushText() {
            if (text.length() > 0) {
                out.println("text \"" + text + "\"");
                text.setLength(0);
            }
        }

        @Override
        public void startElement(String uri, String localName, String qName, Attributes attributes) {
            flushText();
            out.println("start {" + uri + "}" + qName);
            for (int i = 0; i < attributes.getLength(); ++i) {
                if (attributes.getQName(i).startsWith("xmlns")) continue;
                out.println("attr {" + attributes.getURI(i) + "}" + attributes.getQName(i) + "=\"" +
                            attributes.getValue(i) + "\"");
            }
        }

        @Override
        public void endElement(String uri, String localName, String qName) {
            flushText();
            out.println("end {" + uri + "}" + qName);
        }

        @Override
        public void characters(char[] ch, int start, int length) { text.append(ch, start, length); }
    }

    public static void main(String[] args) throws Exception {
        PrintStream out = new PrintStream(System.out, true, StandardCharsets.UTF_8.name());
        for (String name : args) {
            out.println("== " + name.substring(name.lastIndexOf('/') + 1));
            try (InputStream in = new FileInputStream(name)) {
                Dump dump = new Dump(out);
                if (name.endsWith(".xml")) {
                    SAXParserFactory factory = SAXParserFactory.newInstance();
                    factory.setNamespaceAware(true);
                    XMLReader reader = factory.newSAXParser().getXMLReader();
                    reader.setContentHandler(dump);
                    reader.parse(new InputSource(in));
                } else {
                    SAXDocumentParser parser = new SAXDocumentParser();
                    parser.setContentHandler(dump);
                    parser.parse(in);
                }
            } catch (Exception e) {
                out.println("error " + e.getMessage());
            }
        }
    }
}
